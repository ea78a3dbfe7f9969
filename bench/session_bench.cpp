// Prints the session manager's main-thread costs: one streamed 1920x1080 JPEG frame
// through the screen pipeline beside one bare TurboJPEG decode of it, the remote-control
// window's own cost per displayed frame (console build), and, with
// --fleet N, N simulated agents held by one manager, with (in the console build) a list
// view over the computer list model counting the rows it repaints. Run with a private
// HOME and stdout to /dev/null (the log mirrors every line there); figures go to stderr:
//   tests/run-isolated.sh build/bench/session_bench --fleet 200 > /dev/null
#include "FakeZEKTClient.h"
#include "model/LogManager.h"
#include "platform/NotificationHub.h"
#include "protocol/ScreenCaptureMessage.h"
#include "session/ScreenImageDecoder.h"
#include "session/Thumbnailer.h"
#include "session/TurboJpegDecoder.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"
#include "state/ComputerListModel.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <ctime>

#ifdef TELVANE_BENCH_WIDGETS
#include "remotecontrol/RemoteControlViewController.h"
#include "remotecontrol/RemoteControlWindow.h"
#include "remotecontrol/RemoteControlWindowController.h"
#include "remotecontrol/RemoteControlWindowLauncher.h"
#include "remotecontrol/RemoteFrameView.h"
#include "session/DecodedFrameCache.h"

#include <QApplication>
#include <QListView>
#include <QStyledItemDelegate>
#endif

namespace {

// A desktop-like screen: gradient, windows with title bars and lines of text.
QByteArray desktopFrame(int variant)
{
    QImage image(1920, 1080, QImage::Format_RGB32);
    QPainter p(&image);
    QLinearGradient sky(0, 0, 1920, 1080);
    sky.setColorAt(0, QColor(32, 64, 128));
    sky.setColorAt(1, QColor(180, 90, 60));
    p.fillRect(image.rect(), sky);
    for (int w = 0; w < 4; ++w) {
        const QRect frame(80 + w * 420, 90 + w * 120 + variant % 7, 760, 560);
        p.fillRect(frame, Qt::white);
        p.fillRect(frame.x(), frame.y(), frame.width(), 28, QColor(220, 220, 225));
        p.setPen(Qt::black);
        for (int line = 0; line < 26; ++line)
            p.drawText(frame.x() + 12, frame.y() + 50 + line * 19,
                       QStringLiteral("%1  The quick brown fox jumps over the lazy dog %2")
                           .arg(line + variant)
                           .arg(w));
    }
    p.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(50); // the stream's quality at 10 frames per second
    writer.write(image);
    return bytes;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

// CPU time used by the calling thread, in nanoseconds.
qint64 threadCpuNs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

template <typename F> double medianMs(int runs, F &&f)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const qint64 start = threadCpuNs();
        f(i);
        times.push_back(double(threadCpuNs() - start) / 1e6);
    }
    return median(times);
}

double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return 0;
}

// Runs the main event loop (so the dispatcher's sleep and wake-up are seen) until `done`
// or the time-out; true when `done` became true.
template <typename F> bool runEventLoopUntil(F &&done, int timeoutMs)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    poll.start(20);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    if (!done())
        loop.exec();
    return done();
}

void runEventLoopFor(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool accepts(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    return socket.waitForConnected(200);
}

#ifdef TELVANE_BENCH_WIDGETS
// Counts the rows a list view paints.
class CountingDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        ++paints[index.row()];
        QStyledItemDelegate::paint(painter, option, index);
    }
    mutable QHash<int, int> paints;
};

// Counts the rows the model's changes invalidate in the view.
class CountingListView : public QListView {
public:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override
    {
        for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
            ++invalidated[row];
        QListView::dataChanged(topLeft, bottomRight, roles);
    }
    QHash<int, int> invalidated;
};
#endif

// One computer connected through a scripted client and streaming, so that every frame sent
// through the client is accepted by the pipeline.
struct StreamingComputer {
    StreamingComputer()
        : state(std::make_unique<ZEKTManager>([this](const QString &host, quint16 port) {
              fake = std::make_shared<FakeZEKTClient>(host, port);
              fake->autoSucceed = {"connect", "authenticate", "startContinuousStreaming"};
              return fake;
          }))
    {
        computer.host = QStringLiteral("127.0.0.1");
        state.addComputer(computer);
        state.zektManager().connectToComputer(computer);
        (void)QTest::qWaitFor([&] { return state.computer(computer.id)->isConnected; });
        fake->state = ZEKT::ConnectionState::connected;
        state.zektManager().startRemoteControlStreaming(computer, 10);
        QObject::connect(&NotificationHub::shared(), &NotificationHub::notificationPosted, &state,
                         [this](const QString &, const QVariantMap &info) {
                             lastImageData = info.value(QStringLiteral("imageData")).toByteArray();
                             ++posted;
                         });
    }
    // Sends one frame and runs the pipeline until it was broadcast.
    void send(const QByteArray &jpeg, quint64 number)
    {
        const int before = posted;
        fake->sendMessage(std::make_shared<ScreenCaptureMessage>(
            0, QByteArray(jpeg.constData(), jpeg.size()), QStringLiteral("jpeg"), 0.5f, number,
            std::nullopt, 1920, 1080));
        while (posted == before)
            QCoreApplication::processEvents();
    }

    std::shared_ptr<FakeZEKTClient> fake;
    AppState state;
    RemoteComputer computer;
    int posted = 0;
    QByteArray lastImageData; // the broadcast bytes, which the frame cache knows
};

void framePipeline(int frames)
{
    const QByteArray jpeg = desktopFrame(0);
    TurboJpegDecoder bare;
    ScreenImageDecoder decoder;
    Thumbnailer thumbnailer;
    const QImage decoded = bare.decode(jpeg);
    StreamingComputer streaming;

    // Main-thread CPU time, so other processes on a busy machine do not count; interleaved,
    // so both see the same cache and memory load.
    std::vector<double> pipeline, bareDecode, pipelineDecode, thumbnail;
    for (int i = 0; i < frames; ++i) {
        const qint64 start = threadCpuNs();
        streaming.send(jpeg, quint64(i));
        QCoreApplication::processEvents(); // the log appends of this frame
        pipeline.push_back(double(threadCpuNs() - start) / 1e6);
        bareDecode.push_back(medianMs(1, [&](int) { bare.decode(jpeg); }));
        pipelineDecode.push_back(medianMs(1, [&](int) { decoder.decode(jpeg); }));
        thumbnail.push_back(medianMs(1, [&](int) { thumbnailer.createThumbnail(decoded, 640); }));
    }
    std::fprintf(stderr,
                 "Frame 1920x1080 JPEG, %lld bytes, %d frames (medians):\n"
                 "  pipeline per frame (decode, thumbnail, broadcast, log): %.2f ms\n"
                 "  bare TurboJPEG decode:                                  %.2f ms\n"
                 "  ratio:                                                  %.2fx (goal <= 1.5x)\n"
                 "  of which decode %.2f ms, thumbnail %.2f ms\n",
                 qint64(jpeg.size()), frames, median(pipeline), median(bareDecode),
                 median(pipeline) / median(bareDecode), median(pipelineDecode), median(thumbnail));
}

#ifdef TELVANE_BENCH_WIDGETS
// Process CPU time in nanoseconds: Qt may hand image work to its thread pool.
qint64 processCpuNs()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// The remote-control window's own work for a streamed frame the pipeline already decoded:
// the cache look-up, the scaling to the image view's device pixels and the paint, beside a
// bare TurboJPEG decode of the same frame, at the size the window takes on a 1920x1080
// screen and at its opening size.
void windowFrameCost(int frames)
{
    const QByteArray jpeg = desktopFrame(0);
    TurboJpegDecoder bare;
    StreamingComputer streaming;
    RemoteControlWindowLauncher launcher(streaming.state);
    auto *window = qobject_cast<RemoteControlWindowController *>(
        launcher.openRemoteControlWindow(streaming.computer.id));
    RemoteControlViewController &view = *window->remoteControlView();
    RemoteFrameView &image = *view.imageView();
    view.setVisibleAreaForTesting({1920, 1080});
    (void)QTest::qWaitFor([&] { return view.zektClient() != nullptr; });

    for (const bool aspectResized : {true, false}) {
        if (!aspectResized)
            window->window()->resize(RemoteControlWindowController::initialContentWidth,
                                     RemoteControlWindowController::initialContentHeight);
        std::vector<double> lookup, scale, scaleMain, paint, whole, decode;
        for (int i = 0; i < frames; ++i) {
            streaming.send(jpeg, quint64(i));
            // The window's queued step for this frame: look-up, scale, status, then paint.
            qint64 start = processCpuNs();
            const qint64 key = view.currentScreenImage().cacheKey();
            while (view.currentScreenImage().cacheKey() == key)
                QCoreApplication::processEvents();
            image.repaint();
            whole.push_back(double(processCpuNs() - start) / 1e6);

            const QByteArray bytes = streaming.lastImageData;
            start = processCpuNs();
            const QImage frame = DecodedFrameCache::shared().find(streaming.computer.id, bytes);
            lookup.push_back(double(processCpuNs() - start) / 1e6);
            start = processCpuNs();
            const qint64 mainStart = threadCpuNs();
            image.setFrame(frame);
            scale.push_back(double(processCpuNs() - start) / 1e6);
            scaleMain.push_back(double(threadCpuNs() - mainStart) / 1e6);
            start = processCpuNs();
            image.repaint();
            paint.push_back(double(processCpuNs() - start) / 1e6);
            start = processCpuNs();
            bare.decode(jpeg);
            decode.push_back(double(processCpuNs() - start) / 1e6);
        }
        const double own = median(lookup) + median(scale) + median(paint);
        std::fprintf(stderr,
                     "Remote-control window, image view %dx%d (%s), %d frames (medians, process "
                     "CPU):\n"
                     "  cache look-up %.3f ms, scale %.2f ms (main thread %.2f ms, the rest Qt's "
                     "pool), paint %.2f ms: %.2f ms per frame\n"
                     "  bare TurboJPEG decode:   %.2f ms; ratio %.2fx (goal <= 0.3x)\n"
                     "  whole window step (queued hop, look-up, scale, status, paint): %.2f ms\n",
                     image.width(), image.height(),
                     aspectResized ? "as sized for a 1920x1080 screen" : "opening size", frames,
                     median(lookup), median(scale), median(scaleMain), median(paint), own,
                     median(decode), own / median(decode), median(whole));
    }
    window->window()->close();
}
#endif

void fleet(int count, int seconds, bool withView)
{
    QTemporaryDir dir;
    const QString credentials = dir.filePath(QStringLiteral("credentials"));
    const QString agentBinary = QStringLiteral(TELVANE_AGENT_BINARY);
    QProcess setPassword;
    setPassword.start(agentBinary,
                      {"--set-password", "--credentials-file", credentials, "--user", "admin"});
    setPassword.write("fleet-secret\n");
    setPassword.closeWriteChannel();
    setPassword.waitForFinished(60000);

    const quint16 firstPort = 42000;
    QProcess agents;
    agents.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    agents.setStandardOutputFile(QProcess::nullDevice());
    agents.start(agentBinary,
                 {"--fleet", QString::number(count), "--port", QString::number(firstPort), "--bind",
                  "127.0.0.1", "--auth", "file", "--credentials-file", credentials, "--config-dir",
                  dir.filePath("config"), "--uploads-dir", dir.path()});
    agents.waitForStarted();
    QElapsedTimer starting;
    starting.start();
    while (!accepts(quint16(firstPort + count - 1)) && starting.elapsed() < 120000)
        QThread::msleep(100);
    std::fprintf(stderr, "  (the fleet listened after %.1f s)\n",
                 double(starting.elapsed()) / 1000.0);

    const double rssBefore = residentMegabytes();
    AppState state;
    QList<RemoteComputer> computers;
    for (int i = 0; i < count; ++i) {
        RemoteComputer c;
        c.name = QStringLiteral("Agent %1").arg(i);
        c.host = QStringLiteral("127.0.0.1");
        c.port = quint16(firstPort + i);
        c.username = QStringLiteral("admin");
        c.password = QStringLiteral("fleet-secret");
        computers.append(c);
    }
    state.setComputers(computers);
    state.saveComputers();

    QElapsedTimer clock;
    clock.start();
    const qint64 cpuBefore = threadCpuNs();
    for (const RemoteComputer &c : computers)
        state.zektManager().connectToComputer(c);
    const auto connectedCount = [&] {
        return std::count_if(state.computers().begin(), state.computers().end(),
                             [](const RemoteComputer &c) { return c.isConnected; });
    };
    // The agents check passwords with a deliberately slow key derivation; the time until
    // every session has finished its handshake shows the console's own share.
    const auto handshakes = [] {
        return LogManager::shared()
            .logs()
            .filter(QStringLiteral("] Starting authentication for"))
            .size();
    };
    double handshakeSeconds = -1;
    runEventLoopUntil(
        [&] {
            if (handshakeSeconds < 0 && handshakes() >= count)
                handshakeSeconds = double(clock.elapsed()) / 1000.0;
            return connectedCount() == count;
        },
        60000);
    const double connectSeconds = double(clock.elapsed()) / 1000.0;
    const double connectCpuSeconds = double(threadCpuNs() - cpuBefore) / 1e9;
    const auto connected = connectedCount();

    // Statistics reports per row, as the list model announces them.
    ComputerListModel model(state);
    QHash<int, int> reports;
    QObject::connect(&state, &AppState::computerChanged, &model,
                     [&](const QUuid &id, ComputerFields fields) {
                         if (fields.testFlag(ComputerField::systemStats))
                             ++reports[model.row(id)];
                     });
#ifdef TELVANE_BENCH_WIDGETS
    // Every row on screen at once, so a repaint of any row would be seen.
    CountingListView view;
    auto *delegate = new CountingDelegate(&view);
    view.setItemDelegate(delegate);
    view.setUniformItemSizes(true);
    view.setModel(&model);
    view.resize(360, 40 + count * std::max(1, view.sizeHintForRow(0)));
    if (withView)
        view.show();
#endif

    runEventLoopFor(2000); // let the connection burst settle
#ifdef TELVANE_BENCH_WIDGETS
    delegate->paints.clear();
    view.invalidated.clear();
#endif
    reports.clear();
    const qint64 busyBefore = threadCpuNs();
    QElapsedTimer window;
    window.start();
    runEventLoopFor(seconds * 1000);
    const double busy = double(threadCpuNs() - busyBefore) / double(window.nsecsElapsed());
    int reportCount = 0;
    for (int n : std::as_const(reports))
        reportCount += n;
    std::fprintf(stderr,
                 "Fleet of %d simulated agents (statistics every 5 s), one manager:\n"
                 "  connected: %lld of %d after %.2f s (goal <= 10 s); every handshake done "
                 "after %.2f s; main-thread CPU for it all %.2f s\n"
                 "  main thread busy (its CPU time) while statistics arrive: %.2f %% over %d s "
                 "(goal <= 5 %%)\n"
                 "  resident memory: %.1f MB before the fleet, %.1f MB with it (goal <= 200 MB)\n",
                 count, qint64(connected), count, connectSeconds, handshakeSeconds,
                 connectCpuSeconds, busy * 100.0, seconds, rssBefore, residentMegabytes());
#ifdef TELVANE_BENCH_WIDGETS
    // Only a reporting row may be invalidated, once per report; the paints show what the
    // view then draws (it paints the bounding box of the rows dirty in one pass).
    int invalidated = 0, rowsInvalidatedForOthers = 0, paints = 0;
    for (auto it = view.invalidated.cbegin(); it != view.invalidated.cend(); ++it) {
        invalidated += it.value();
        rowsInvalidatedForOthers += it.value() > reports.value(it.key());
    }
    for (int n : std::as_const(delegate->paints))
        paints += n;
    const double perReport = reportCount ? 1.0 / reportCount : 0.0;
    std::fprintf(stderr,
                 "  list view over the computer list model, %d rows on screen, %d statistics "
                 "reports:\n"
                 "    rows invalidated per report: %.2f; rows invalidated for another "
                 "computer's report: %d (goal 0)\n"
                 "    rows painted per report: %.2f (reports that arrive together share one "
                 "paint pass)\n",
                 count, reportCount, invalidated * perReport, rowsInvalidatedForOthers,
                 paints * perReport);
#else
    std::fprintf(stderr, "  %d statistics reports (no list view: built without the console)\n",
                 reportCount);
#endif
    for (const RemoteComputer &c : computers)
        state.zektManager().disconnectFromComputer(c);
    agents.terminate();
    agents.waitForFinished(10000);
    state.waitForPendingWrites();
}

} // namespace

int main(int argc, char **argv)
{
#ifdef TELVANE_BENCH_WIDGETS
    QApplication app(argc, argv);
#else
    QGuiApplication app(argc, argv);
#endif
    QCommandLineParser parser;
    parser.addOptions({{"frames", "Frames to time.", "N", "60"},
                       {"fleet", "Simulated agents for the fleet run (0: none).", "N", "0"},
                       {"seconds", "Length of the statistics window.", "S", "30"},
                       {"no-view", "Leave the fleet's list view hidden."}});
    parser.process(app);
    framePipeline(std::max(1, parser.value("frames").toInt()));
#ifdef TELVANE_BENCH_WIDGETS
    windowFrameCost(std::max(1, parser.value("frames").toInt()));
#endif
    if (const int count = parser.value("fleet").toInt(); count > 0)
        fleet(count, std::max(5, parser.value("seconds").toInt()), !parser.isSet("no-view"));
    return 0;
}
