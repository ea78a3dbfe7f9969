// Input-to-frame latency of the remote-control window on loopback: a pointer move enters the
// window's image view as a Qt event, goes to telvane-agent --simulate, which draws its
// crosshair at the new point in the next frame it streams; the time ends when the window shows
// a frame with the crosshair there. The stream runs at 30 frames per second (the slider moved
// to its end and the restart waited for). Prints the median and the 99th percentile. Run with
// a private HOME, stdout to /dev/null (the log mirrors every line there):
//   tests/run-isolated.sh build/bench/remote_control_bench --samples 300 > /dev/null
#include "AgentProcess.h"
#include "platform/NotificationHub.h"
#include "remotecontrol/FrameRateSlider.h"
#include "remotecontrol/RemoteControlViewController.h"
#include "remotecontrol/RemoteControlWindow.h"
#include "remotecontrol/RemoteControlWindowController.h"
#include "remotecontrol/RemoteControlWindowLauncher.h"
#include "remotecontrol/RemoteFrameView.h"
#include "state/AppState.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace {

// The simulated agent draws its crosshair in pure red; JPEG leaves it close to that.
bool crosshairAt(const QImage &frame, const QPoint &at)
{
    if (!frame.rect().contains(at))
        return false;
    const QColor c = frame.pixelColor(at);
    return c.red() > 190 && c.green() < 110 && c.blue() < 110;
}

double percentile(std::vector<double> values, double p)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[std::min(values.size() - 1, size_t(p * values.size()))];
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"samples", "Pointer moves to time.", "N", "300"}});
    parser.process(app);
    const int samples = std::max(10, parser.value("samples").toInt());

    QTemporaryDir dir;
    const QString password = QStringLiteral("bench-secret");
    AgentProcess agent(dir.path());
    if (!AgentProcess::setPassword(dir.filePath("credentials"), "admin", password) ||
        !agent.start({"--simulate", "--auth", "file", "--credentials-file",
                      dir.filePath("credentials"), "--bind", "127.0.0.1", "--port", "0"})) {
        std::fprintf(stderr, "the simulated agent did not start\n");
        return 1;
    }
    AppState state;
    RemoteComputer computer;
    computer.name = QStringLiteral("Simulated");
    computer.host = QStringLiteral("127.0.0.1");
    computer.port = agent.port();
    computer.username = QStringLiteral("admin");
    computer.password = password;
    state.addComputer(computer);

    RemoteControlWindowLauncher launcher(state);
    auto *window = qobject_cast<RemoteControlWindowController *>(
        launcher.openRemoteControlWindow(computer.id));
    RemoteControlViewController &view = *window->remoteControlView();
    RemoteFrameView &image = *view.imageView();
    view.setVisibleAreaForTesting({1920, 1080}); // as on a 1920x1080 screen
    window->window()->activateWindow();
    if (!QTest::qWaitForWindowActive(window->window()) ||
        !QTest::qWaitFor([&] { return image.hasFrame(); }, 20000)) {
        std::fprintf(stderr, "no frame arrived\n");
        return 1;
    }
    // 30 frames per second, and the restart done.
    view.frameRateSlider()->triggerAction(QAbstractSlider::SliderToMaximum);
    (void)QTest::qWaitFor([&] { return agent.lines().filter("at 30 frames/s").size() > 0; }, 5000);
    QTest::qWait(500);

    int framesShown = 0;
    QObject::connect(&NotificationHub::shared(), &NotificationHub::notificationPosted, &app,
                     [&framesShown] { ++framesShown; });
    const QSize size = image.size();
    const QSizeF remote = view.serverScreenSize();
    std::vector<double> latencies;
    QElapsedTimer clock;
    clock.start();
    int misses = 0;
    for (int i = 0; i < samples; ++i) {
        // A point away from the last one, so the old crosshair never counts.
        const QPoint local(60 + (i % 2) * (size.width() / 2) + (i * 37) % (size.width() / 3),
                           60 + (i * 53) % (size.height() / 2));
        const QPoint pixel(qRound(local.x() * remote.width() / size.width()),
                           qRound(local.y() * remote.height() / size.height()));
        // Moves land at any point of the agent's frame interval.
        QTest::qWait(int(QRandomGenerator::global()->bounded(34, 68)));
        QMouseEvent move(QEvent::MouseMove, QPointF(local), image.mapToGlobal(QPointF(local)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        const qint64 start = clock.nsecsElapsed();
        QApplication::sendEvent(&image, &move);
        // Checked right after the window handled each frame: its step was queued first.
        QEventLoop loop;
        qint64 shown = 0;
        QObject::connect(
            &NotificationHub::shared(), &NotificationHub::notificationPosted, &loop,
            [&] {
                if (!crosshairAt(view.currentScreenImage(), pixel))
                    return;
                image.repaint(); // shown: painted, not only decoded
                shown = clock.nsecsElapsed();
                loop.quit();
            },
            Qt::QueuedConnection);
        QTimer::singleShot(2000, &loop, &QEventLoop::quit);
        loop.exec();
        if (shown == 0) {
            ++misses;
            continue;
        }
        latencies.push_back(double(shown - start) / 1e6);
    }
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    std::fprintf(stderr,
                 "Input to changed frame shown, loopback, 30 frames/s asked (%.1f shown per "
                 "second), image view %dx%d, %zu moves (%d without a matching frame):\n"
                 "  median %.1f ms, 99th percentile %.1f ms, best %.1f ms, worst %.1f ms "
                 "(goal: median <= 50 ms, p99 <= 80 ms)\n",
                 framesShown / seconds, size.width(), size.height(), latencies.size(), misses, percentile(latencies, 0.5),
                 percentile(latencies, 0.99), percentile(latencies, 0.0),
                 percentile(latencies, 1.0));
    window->window()->close();
    state.waitForPendingWrites();
    return misses > samples / 10 ? 1 : 0;
}
