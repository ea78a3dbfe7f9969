// The remote-control window against the real telvane-agent --simulate on 127.0.0.1, on a
// private Xvfb display with real X input (xdotool), so key events carry real scan codes.
// With TELVANE_SCREENSHOT_DIR set it also writes the window's states there as PNG files.
#include "AgentProcess.h"
#include "LogLines.h"
#include "XvfbServer.h"
#include "ui/ElidedLabel.h"
#include "remotecontrol/FrameRateSlider.h"
#include "remotecontrol/RemoteControlViewController.h"
#include "remotecontrol/RemoteControlWindow.h"
#include "remotecontrol/RemoteControlWindowController.h"
#include "remotecontrol/RemoteControlWindowLauncher.h"
#include "remotecontrol/RemoteFrameView.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QApplication>
#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString password = QStringLiteral("correct horse");

bool xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(10000) && process.exitCode() == 0;
}

} // namespace

class RemoteControlAgentTest : public QObject {
    Q_OBJECT

private:
    RemoteComputer addComputer(quint16 port, const QString &name = QStringLiteral("Simulated"))
    {
        RemoteComputer computer;
        computer.name = name;
        computer.host = QStringLiteral("127.0.0.1");
        computer.port = port;
        computer.username = QStringLiteral("admin");
        computer.password = password;
        state->addComputer(computer);
        return computer;
    }
    RemoteControlWindowController *open(const RemoteComputer &computer)
    {
        return qobject_cast<RemoteControlWindowController *>(
            launcher->openRemoteControlWindow(computer.id));
    }
    // The agent's latest line that starts with `prefix` after "input: ", as the numbers in it.
    QList<double> numbersOfLast(const QString &prefix)
    {
        const QStringList lines = agent->lines().filter(QStringLiteral("input: ") + prefix);
        QList<double> numbers;
        static const QRegularExpression number(QStringLiteral("-?\\d+(\\.\\d+)?"));
        if (!lines.isEmpty()) {
            const QString tail = lines.last().mid(lines.last().indexOf(prefix) + prefix.size());
            for (auto it = number.globalMatch(tail); it.hasNext();)
                numbers << it.next().captured().toDouble();
        }
        return numbers;
    }
    void screenshot(QWidget &window, const QString &name, const QSize &size = {})
    {
        const QString folder = qEnvironmentVariable("TELVANE_SCREENSHOT_DIR");
        if (folder.isEmpty())
            return;
        if (size.isValid()) {
            window.resize(size);
            QTest::qWait(400); // a few frames at the new size
        }
        QVERIFY(window.grab().save(QDir(folder).filePath(name + QStringLiteral(".png"))));
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
            QSKIP("xdotool is not installed");
        QVERIFY(AgentProcess::setPassword(dir.filePath("credentials"), "admin", password));
        agent = std::make_unique<AgentProcess>(dir.path());
        QVERIFY(agent->start({"--simulate", "--auth", "file", "--credentials-file",
                              dir.filePath("credentials"), "--bind", "127.0.0.1", "--port", "0"}));
        state = std::make_unique<AppState>();
        launcher = std::make_unique<RemoteControlWindowLauncher>(*state);
    }
    void cleanupTestCase()
    {
        launcher.reset();
        if (state)
            state->waitForPendingWrites();
        state.reset();
        agent.reset();
    }

    void streamsAndForwardsInput()
    {
        const RemoteComputer computer = addComputer(agent->port());
        QPointer<RemoteControlWindowController> window = open(computer);
        QVERIFY(window);
        RemoteControlWindow &widget = *window->window();
        RemoteControlViewController &view = *window->remoteControlView();
        screenshot(widget, QStringLiteral("remote-control-connecting"));
        widget.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&widget));

        // Frames show, and the window took the remote aspect ratio once.
        QTRY_COMPARE_WITH_TIMEOUT(view.statusText(),
                                  QStringLiteral("Connected - Screen: 1920x1080"), 20000);
        QTRY_VERIFY(view.imageView()->hasFrame());
        const QSize image = view.imageView()->size();
        QVERIFY2(qAbs(image.width() * 9 - image.height() * 16) <= 16,
                 qPrintable(QStringLiteral("%1x%2").arg(image.width()).arg(image.height())));
        QCOMPARE(LogLines::count("UI", "Resized remote control window to match server screen "
                                       "aspect ratio 1.78"),
                 1);
        screenshot(widget, QStringLiteral("remote-control-streaming"));

        // A real click: the remote y counts from the bottom.
        const QPoint local(image.width() / 4, image.height() / 4);
        const QPoint global = view.imageView()->mapToGlobal(local);
        QVERIFY(xdotool(
            {"mousemove", "--sync", QString::number(global.x()), QString::number(global.y())}));
        QVERIFY(agent->waitForLine(QStringLiteral("input: mouse move to")));
        QVERIFY(xdotool({"click", "1"}));
        QVERIFY(agent->waitForLine(QStringLiteral("input: mouse button 0 up at")));
        const QList<double> at = numbersOfLast(QStringLiteral("mouse button 0 down at"));
        QCOMPARE(at.size(), 2);
        QVERIFY(qAbs(at[0] - local.x() * 1920.0 / image.width()) < 0.01);
        QVERIFY(qAbs(at[1] - (image.height() - local.y()) * 1080.0 / image.height()) < 0.01);
        QVERIFY(xdotool({"click", "3"}));
        QVERIFY(agent->waitForLine(QStringLiteral("input: mouse button 1 up at")));

        // Real keys: the code by position and the whole flag word.
        QVERIFY(xdotool({"key", "shift+a", "Right", "F5"}));
        QVERIFY(
            agent->waitForLine(QStringLiteral("input: key A (shift) code 0 down flags 0x20000")));
        QVERIFY(
            agent->waitForLine(QStringLiteral("input: key Right code 124 down flags 0xa00000")));
        QVERIFY(agent->waitForLine(QStringLiteral("input: key F5 code 96 up flags 0x800000")));
        QVERIFY(agent->lines().filter(QStringLiteral("input: key Shift")).isEmpty());

        // A new rate restarts the stream, and frames keep coming.
        view.frameRateSlider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        QVERIFY(agent->waitForLine(QStringLiteral(" stopped")));
        QVERIFY(agent->waitForLine(QStringLiteral("at 3.63636 frames/s")));
        QTRY_COMPARE(LogLines::count("SCREEN", "Restarted streaming with new frame rate: 3 FPS"),
                     1);
        const int shown = LogLines::countStartingWith("Received screen capture for computer");
        QTRY_VERIFY(LogLines::countStartingWith("Received screen capture for computer") > shown);
        screenshot(widget, QStringLiteral("remote-control-1000x700"), {1000, 700});
        screenshot(widget, QStringLiteral("remote-control-800x600"), {800, 600});

        // Closing stops the frames.
        const int stops = agent->lines().filter(QStringLiteral(" stopped")).size();
        widget.close();
        QVERIFY(!state->zektManager().isStreaming(computer.id));
        QTRY_VERIFY(agent->lines().filter(QStringLiteral(" stopped")).size() > stops);
        QTRY_VERIFY(!window);
    }

    void failedStartAndDroppedSession()
    {
        if (!state)
            QSKIP("no agent");
        // A port nothing listens on any more.
        QTcpServer gone;
        QVERIFY(gone.listen(QHostAddress::LocalHost, 0));
        const quint16 closedPort = gone.serverPort();
        gone.close();
        QPointer<RemoteControlWindowController> failed =
            open(addComputer(closedPort, QStringLiteral("Unreachable")));
        QTRY_VERIFY_WITH_TIMEOUT(
            failed->remoteControlView()->statusText().startsWith("Connection failed: "), 20000);
        QVERIFY(failed->window()->isVisible());
        screenshot(*failed->window(), QStringLiteral("remote-control-failed"));
        failed->window()->close();

        // The agent goes away: the window stays on its last frame and says so.
        const RemoteComputer computer = addComputer(agent->port());
        QPointer<RemoteControlWindowController> window = open(computer);
        RemoteControlViewController &view = *window->remoteControlView();
        QTRY_VERIFY_WITH_TIMEOUT(view.statusText().startsWith("Connected - Screen"), 20000);
        agent->terminate();
        QTRY_VERIFY_WITH_TIMEOUT(view.statusText().startsWith("Disconnected"), 20000);
        QVERIFY(window->window()->isVisible());
        QVERIFY(view.imageView()->hasFrame());
        screenshot(*window->window(), QStringLiteral("remote-control-disconnected"));
    }

private:
    QTemporaryDir dir;
    std::unique_ptr<AgentProcess> agent;
    std::unique_ptr<AppState> state;
    std::unique_ptr<RemoteControlWindowLauncher> launcher;
};

// Xvfb comes up before the application, which then talks to it through xcb.
int main(int argc, char **argv)
{
    XvfbServer xvfb;
    if (!XvfbServer::available() || !xvfb.start(1920, 1080)) {
        std::printf("SKIP: Xvfb is not available\n");
        return 0;
    }
    qputenv("DISPLAY", xvfb.display().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication app(argc, argv);
    RemoteControlAgentTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "RemoteControlAgentTest.moc"
