// Agent benchmark: capture + encode of a changing 1920x1080 Xvfb screen next to x11vnc
// serving the same screen, a still screen streamed at 30 FPS, and an idle agent with 10
// sessions receiving statistics. Prints its figures; run by hand (see docs/benchmarks.md).
#include "AgentProcess.h"
#include "BandedJpegEncoder.h"
#include "JpegEncoder.h"
#include "ProtocolTestKit.h"
#include "RfbClient.h"
#include "X11ScreenProvider.h"
#include "XvfbServer.h"

#include "ScreenCaptureMessage.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <xcb/xcb.h>

#include <atomic>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <thread>
#include <unistd.h>

namespace {

double threadCpuSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) / 1e9;
}

double processCpuSeconds(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = stat.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return double(fields.value(11).toLongLong() + fields.value(12).toLongLong()) /
           double(sysconf(_SC_CLK_TCK));
}

double residentMegabytes(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return 0;
}

// Keeps the screen changing: a textured image scrolled across a full-screen window (the
// worst case: every pixel changes each frame), or, on the same still textured desktop,
// inside an 800x450 window as a video or a dragged window would. Copied inside the X server,
// so the animation costs this process next to nothing.
class Animator {
public:
    enum class Scene { fullScreen, window };
    static constexpr int windowWidth = 800, windowHeight = 450;

    explicit Animator(Scene scene) : m_scene(scene) {}
    void start()
    {
        m_running = true;
        m_thread = std::thread([this] { run(); });
    }
    void stop()
    {
        m_running = false;
        if (m_thread.joinable())
            m_thread.join();
    }

private:
    void run()
    {
        xcb_connection_t *c = xcb_connect(nullptr, nullptr);
        for (int attempt = 0; xcb_connection_has_error(c) && attempt < 50; ++attempt) {
            xcb_disconnect(c);
            QThread::msleep(100);
            c = xcb_connect(nullptr, nullptr);
        }
        if (xcb_connection_has_error(c)) {
            std::printf(
                "animation: cannot connect to the X server; figures are of a still screen\n");
            xcb_disconnect(c);
            return;
        }
        xcb_screen_t *s = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
        const int w = s->width_in_pixels, h = s->height_in_pixels;
        const xcb_window_t win = xcb_generate_id(c);
        const quint32 values[] = {1};
        xcb_create_window(c, XCB_COPY_FROM_PARENT, win, s->root, 0, 0, quint16(w), quint16(h), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, s->root_visual, XCB_CW_OVERRIDE_REDIRECT,
                          values);
        xcb_map_window(c, win);
        const xcb_pixmap_t pixmap = xcb_generate_id(c);
        xcb_create_pixmap(c, s->root_depth, pixmap, win, quint16(w), quint16(h));
        const xcb_gcontext_t gc = xcb_generate_id(c);
        xcb_create_gc(c, gc, pixmap, 0, nullptr);
        // Photo-like texture: gradients with noise, so JPEG has real work to do.
        QByteArray rows(w * 4 * 32, '\0');
        quint32 seed = 12345;
        for (int y0 = 0; y0 < h; y0 += 32) {
            auto *p = reinterpret_cast<quint32 *>(rows.data());
            for (int y = 0; y < 32; ++y)
                for (int x = 0; x < w; ++x) {
                    seed = seed * 1664525u + 1013904223u;
                    const int n = int(seed >> 27);
                    const int yy = y0 + y;
                    p[y * w + x] =
                        quint32(((x * 255 / w + n) & 255) << 16 | ((yy * 255 / h + n) & 255) << 8 |
                                (((x + yy) * 127 / (w + h) + (x / 64 + yy / 64) % 2 * 100) & 255));
                }
            xcb_put_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, gc, quint16(w), 32, 0, qint16(y0),
                          0, s->root_depth, quint32(rows.size()),
                          reinterpret_cast<const uint8_t *>(rows.constData()));
        }
        if (m_scene == Scene::window)
            xcb_copy_area(c, pixmap, win, gc, 0, 0, 0, 0, quint16(w), quint16(h));
        int frame = 0;
        while (m_running) {
            if (m_scene == Scene::window) {
                const int dx = (frame * 13) % (w - windowWidth);
                xcb_copy_area(c, pixmap, win, gc, qint16(dx), 0, qint16((w - windowWidth) / 2),
                              qint16((h - windowHeight) / 2), windowWidth, windowHeight);
            } else {
                const int dx = (frame * 13) % w;
                xcb_copy_area(c, pixmap, win, gc, qint16(dx), 0, 0, 0, quint16(w - dx), quint16(h));
                if (dx > 0)
                    xcb_copy_area(c, pixmap, win, gc, 0, 0, qint16(w - dx), 0, quint16(dx),
                                  quint16(h));
            }
            std::free(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
            ++frame;
            QThread::msleep(16);
        }
        xcb_destroy_window(c, win);
        xcb_free_pixmap(c, pixmap);
        xcb_disconnect(c);
    }
    const Scene m_scene;
    std::atomic<bool> m_running{false};
    std::thread m_thread;
};

// TurboJPEG alone on one grab of the screen, as one whole-frame call: the floor under any
// capture path that sends this screen as a JPEG at quality 0.5. Milliseconds of CPU, or 0.
double encoderFloor()
{
    xcb_connection_t *c = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(c)) {
        xcb_disconnect(c);
        return 0;
    }
    xcb_screen_t *s = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const int w = s->width_in_pixels, h = s->height_in_pixels;
    xcb_get_image_reply_t *image = xcb_get_image_reply(
        c, xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, s->root, 0, 0, quint16(w), quint16(h), ~0u),
        nullptr);
    double ms = 0;
    if (image && xcb_get_image_data_length(image) >= w * h * 4) {
        JpegEncoder encoder;
        const uchar *pixels = xcb_get_image_data(image);
        encoder.encode(pixels, w, h, w * 4, 0.5f); // sizes the output buffer
        constexpr int rounds = 60;
        const double before = threadCpuSeconds();
        for (int i = 0; i < rounds; ++i)
            encoder.encode(pixels, w, h, w * 4, 0.5f);
        ms = 1000.0 * (threadCpuSeconds() - before) / rounds;
    }
    std::free(image);
    xcb_disconnect(c);
    return ms;
}

void captureFigures(double seconds)
{
    X11ScreenProvider provider;
    // As fast as the screen changes: a stream skips captures that DAMAGE calls unchanged,
    // so every frame counted carries new pixels; CPU is that of those captures alone.
    int frames = 0;
    qint64 bytes = 0;
    double cpu = 0;
    provider.capture(0.5f, true, 1); // connect, set up shared memory, first frame
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < qint64(seconds * 1000)) {
        const double before = threadCpuSeconds();
        const ZEKTCapturedFrame f = provider.capture(0.5f, true, 1);
        if (f.status == ZEKTCapturedFrame::Status::ok) {
            cpu += threadCpuSeconds() - before;
            ++frames;
            bytes += f.imageData.size();
        } else {
            QThread::msleep(1);
        }
    }
    const double wall = double(clock.elapsed()) / 1000.0;
    std::printf("agent capture+encode, unpaced: %.1f FPS, %.1f ms CPU per frame, %.0f KB per "
                "frame\n",
                frames / wall, 1000.0 * cpu / qMax(1, frames),
                double(bytes) / qMax(1, frames) / 1024.0);
    provider.endStream(1);

    // Paced at 30 FPS, as a stream would be.
    frames = 0;
    clock.restart();
    const double cpu1 = threadCpuSeconds();
    for (int i = 0; clock.elapsed() < qint64(seconds * 1000); ++i) {
        if (provider.capture(0.5f, true, 2).status == ZEKTCapturedFrame::Status::ok)
            ++frames;
        const qint64 next = qint64((i + 1) * 1000.0 / 30.0);
        if (next > clock.elapsed())
            QThread::msleep(quint64(next - clock.elapsed()));
    }
    const double paced = threadCpuSeconds() - cpu1;
    std::printf("agent capture+encode at 30 FPS: %.1f FPS delivered, %.3f of a core\n",
                frames / (double(clock.elapsed()) / 1000.0),
                paced / (double(clock.elapsed()) / 1000.0));
}

void x11vncFigures(double seconds, int qualityLevel, double floorMs)
{
    const quint16 port = quint16(20000 + getpid() % 20000);
    QProcess vnc;
    vnc.setProcessChannelMode(QProcess::MergedChannels);
    vnc.start(QStringLiteral("x11vnc"),
              {QStringLiteral("-display"), qEnvironmentVariable("DISPLAY"),
               QStringLiteral("-rfbport"), QString::number(port), QStringLiteral("-localhost"),
               QStringLiteral("-nopw"), QStringLiteral("-shared"), QStringLiteral("-forever"),
               QStringLiteral("-quiet")});
    if (!vnc.waitForStarted(5000)) {
        std::printf("x11vnc: not installed, no comparison\n");
        return;
    }
    RfbClient client;
    QString error;
    bool connected = false;
    for (int attempt = 0; attempt < 50 && !connected; ++attempt) {
        QThread::msleep(200);
        connected = client.connect(port, qualityLevel, &error);
    }
    if (!connected) {
        std::printf("x11vnc: %s\n", qPrintable(error));
        vnc.kill();
        vnc.waitForFinished();
        return;
    }
    client.receiveFullUpdates(2.0, &error); // warm-up
    const double cpu0 = processCpuSeconds(vnc.processId());
    QElapsedTimer clock;
    clock.start();
    const int updates = client.receiveFullUpdates(seconds, &error);
    const double cpu = processCpuSeconds(vnc.processId()) - cpu0;
    const double wall = double(clock.elapsed()) / 1000.0;
    const double perFrame = 1000.0 * cpu / qMax(1, updates);
    std::printf("x11vnc full updates (Tight, JPEG quality level %d): %.1f FPS, %.1f ms CPU per "
                "frame, %.2f of a core",
                qualityLevel, updates / wall, perFrame, cpu / wall);
    if (floorMs > 0 && perFrame > 0)
        std::printf("; TurboJPEG alone is %.2f of its frame", floorMs / perFrame);
    std::printf("%s%s\n", error.isEmpty() ? "" : ", stopped: ", qPrintable(error));
    vnc.terminate();
    if (!vnc.waitForFinished(5000))
        vnc.kill();
    vnc.waitForFinished();
}

void agentFigures(const QString &workDir, double seconds)
{
    const QString credentials = workDir + QStringLiteral("/credentials");
    AgentProcess::setPassword(credentials, QStringLiteral("bench"), QStringLiteral("bench"));
    AgentProcess agent(workDir);
    if (!agent.start({QStringLiteral("--bind"), QStringLiteral("127.0.0.1"),
                      QStringLiteral("--port"), QStringLiteral("0"),
                      QStringLiteral("--credentials-file"), credentials,
                      QStringLiteral("--uploads-dir"), workDir + QStringLiteral("/up")})) {
        std::printf("agent: did not start\n");
        return;
    }
    const qint64 agentPid = agent.processId();

    auto makeClient = [&](std::atomic<int> *frames) {
        auto c = ZEKTClient::create(QStringLiteral("127.0.0.1"), agent.port());
        c->setOnServerIdentityMismatch([](const QString &, const QString &) { return true; });
        c->setMessageHandler([frames](const ZEKTMessagePtr &m) {
            if (frames && m->type() == ZEKTMessage::Type::screenCapture)
                ++*frames;
        });
        if (!settle(c->connect()).isEmpty() ||
            !settle(c->authenticate(QStringLiteral("bench"), QStringLiteral("bench")), 30000)
                 .isEmpty())
            return std::shared_ptr<ZEKTClient>();
        return c;
    };

    // A still screen streamed at 30 FPS: only the first frame should go out.
    std::atomic<int> frames{0};
    auto streamer = makeClient(&frames);
    if (!streamer) {
        std::printf("agent: login failed\n");
        return;
    }
    settle(streamer->startContinuousStreaming(1, 0.5f, 30.0));
    QTest::qWait(1000);
    double cpu0 = processCpuSeconds(agentPid);
    const int before = frames;
    QTest::qWait(int(seconds * 1000));
    double cpu = processCpuSeconds(agentPid) - cpu0;
    std::printf("agent streaming a still screen at 30 FPS: %d frame(s) in total, %d during %.0f s, "
                "%.4f of a core\n",
                int(frames), frames - before, seconds, cpu / seconds);
    settle(streamer->stopContinuousStreaming());
    streamer->disconnect();

    // Ten sessions receiving statistics (every 5 s).
    std::vector<std::shared_ptr<ZEKTClient>> sessions;
    for (int i = 0; i < 10; ++i)
        if (auto c = makeClient(nullptr))
            sessions.push_back(c);
    QTest::qWait(2000);
    cpu0 = processCpuSeconds(agentPid);
    QTest::qWait(int(seconds * 2 * 1000));
    cpu = processCpuSeconds(agentPid) - cpu0;
    std::printf("agent idle with %zu authenticated sessions: %.4f of a core, %.1f MB resident\n",
                sessions.size(), cpu / (seconds * 2), residentMegabytes(agentPid));
    for (auto &c : sessions)
        c->disconnect();
}

} // namespace

int main(int argc, char *argv[])
{
    BandedJpegEncoder::enableRestartMarkers();
    // The agent's allocator settings, so frame buffers cost what they cost there.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    mallopt(M_ARENA_MAX, 2);
    QCoreApplication app(argc, argv);
    const double seconds = argc > 1 ? std::max(1.0, QByteArray(argv[1]).toDouble()) : 10.0;
    XvfbServer xvfb;
    if (!XvfbServer::available() || !xvfb.start(1920, 1080)) {
        std::printf("Xvfb is not available; nothing measured\n");
        return 1;
    }
    qputenv("DISPLAY", xvfb.display().toLocal8Bit());
    qunsetenv("XDG_SESSION_TYPE");
    std::printf("1920x1080 Xvfb %s, quality 0.5, %.0f s per figure, %d cores\n",
                qPrintable(xvfb.display()), seconds, QThread::idealThreadCount());

    for (const auto scene : {Animator::Scene::fullScreen, Animator::Scene::window}) {
        std::printf("\n%s\n", scene == Animator::Scene::fullScreen
                                  ? "Whole screen scrolling (every pixel changes each frame):"
                                  : "Still desktop, 800x450 window scrolling:");
        Animator animator(scene);
        animator.start();
        QThread::msleep(500);
        captureFigures(seconds);
        // Where every pixel changes, each frame is one whole-frame encode at best.
        double floorMs = 0;
        if (scene == Animator::Scene::fullScreen) {
            floorMs = encoderFloor();
            std::printf("TurboJPEG alone, one whole-frame call on a grab (quality 50, 4:2:0): "
                        "%.1f ms CPU\n",
                        floorMs);
        }
        x11vncFigures(seconds, 3, floorMs);
        x11vncFigures(seconds, 4, floorMs);
        animator.stop();
    }

    QTemporaryDir work;
    agentFigures(work.path(), seconds);
    return 0;
}
