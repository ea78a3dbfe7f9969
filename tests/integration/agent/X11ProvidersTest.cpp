#include "BandedJpegEncoder.h"
#include "X11DisplayFactsSource.h"
#include "X11InputProvider.h"
#include "X11ScreenProvider.h"
#include "XvfbServer.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <gtest/gtest.h>
#include <turbojpeg.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <unistd.h>

namespace {

// A client of the test display that draws and watches events like an application would.
class TestClient {
public:
    TestClient() : c(xcb_connect(nullptr, nullptr))
    {
        screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    }
    ~TestClient() { xcb_disconnect(c); }

    xcb_window_t window(int x, int y, int w, int h, quint32 events)
    {
        const xcb_window_t id = xcb_generate_id(c);
        const quint32 values[] = {screen->black_pixel, 1, events};
        xcb_create_window(c, XCB_COPY_FROM_PARENT, id, screen->root, qint16(x), qint16(y),
                          quint16(w), quint16(h), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen->root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(c, id);
        sync();
        return id;
    }
    void fill(xcb_window_t window, quint32 rgb, int x, int y, int w, int h)
    {
        const xcb_gcontext_t gc = xcb_generate_id(c);
        xcb_create_gc(c, gc, window, XCB_GC_FOREGROUND, &rgb);
        const xcb_rectangle_t rect{qint16(x), qint16(y), quint16(w), quint16(h)};
        xcb_poly_fill_rectangle(c, window, gc, 1, &rect);
        xcb_free_gc(c, gc);
        sync();
    }
    void sync() { std::free(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr)); }
    // The next event of `type` within a few seconds, or null.
    xcb_generic_event_t *waitFor(quint8 type)
    {
        QDeadlineTimer deadline(5000);
        while (!deadline.hasExpired()) {
            while (xcb_generic_event_t *e = xcb_poll_for_event(c)) {
                if ((e->response_type & 0x7f) == type)
                    return e;
                std::free(e);
            }
            QThread::msleep(5);
        }
        return nullptr;
    }

    xcb_connection_t *c;
    xcb_screen_t *screen;
};

// Pixel (x, y) of a decoded JPEG as 0xRRGGBB.
quint32 pixelAt(const QByteArray &jpeg, int x, int y, int *width = nullptr, int *height = nullptr)
{
    tjhandle h = tjInitDecompress();
    int w = 0, ht = 0, subsamp = 0, cs = 0;
    tjDecompressHeader3(h, reinterpret_cast<const uchar *>(jpeg.constData()), jpeg.size(), &w, &ht,
                        &subsamp, &cs);
    QByteArray rgb(w * ht * 3, '\0');
    tjDecompress2(h, reinterpret_cast<const uchar *>(jpeg.constData()), jpeg.size(),
                  reinterpret_cast<uchar *>(rgb.data()), w, 0, ht, TJPF_RGB, 0);
    tjDestroy(h);
    if (width)
        *width = w;
    if (height)
        *height = ht;
    const uchar *p = reinterpret_cast<const uchar *>(rgb.constData()) + (y * w + x) * 3;
    return quint32(p[0]) << 16 | quint32(p[1]) << 8 | p[2];
}

bool near(quint32 a, quint32 b)
{
    for (int shift = 0; shift <= 16; shift += 8) {
        if (std::abs(int((a >> shift) & 0xFF) - int((b >> shift) & 0xFF)) > 24)
            return false;
    }
    return true;
}

ZEKTCapturedFrame captureWhenReady(X11ScreenProvider &provider, bool skip, quintptr key)
{
    // The provider retries the display once a second.
    QDeadlineTimer deadline(10000);
    ZEKTCapturedFrame frame;
    while (!deadline.hasExpired()) {
        frame = provider.capture(0.9f, skip, key);
        if (frame.status != ZEKTCapturedFrame::Status::failed)
            break;
        QThread::msleep(100);
    }
    return frame;
}

class X11ProvidersTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!XvfbServer::available())
            GTEST_SKIP() << "Xvfb is not installed; the X11 capture and input tests need it";
        BandedJpegEncoder::enableRestartMarkers(); // as the agent does
        ASSERT_TRUE(xvfb.start());
        qputenv("DISPLAY", xvfb.display().toLocal8Bit());
        qunsetenv("XDG_SESSION_TYPE");
    }
    XvfbServer xvfb;
};

} // namespace

TEST_F(X11ProvidersTest, CapturedFrameShowsWhatAClientDrew)
{
    TestClient client;
    const xcb_window_t w = client.window(0, 0, 1920, 1080, XCB_EVENT_MASK_EXPOSURE);
    client.fill(w, 0xFF0000, 0, 0, 960, 540);
    client.fill(w, 0x00FF00, 960, 0, 960, 540);
    client.fill(w, 0x0000FF, 0, 540, 960, 540);
    client.fill(w, 0xFFFFFF, 960, 540, 960, 540);

    X11ScreenProvider provider;
    const ZEKTCapturedFrame frame = captureWhenReady(provider, true, 7);
    ASSERT_EQ(frame.status, ZEKTCapturedFrame::Status::ok) << frame.error.toStdString();
    EXPECT_EQ(frame.width, 1920u);
    EXPECT_EQ(frame.height, 1080u);
    int jw = 0, jh = 0;
    EXPECT_TRUE(near(pixelAt(frame.imageData, 480, 270, &jw, &jh), 0xFF0000));
    EXPECT_EQ(jw, 1920);
    EXPECT_EQ(jh, 1080);
    EXPECT_TRUE(near(pixelAt(frame.imageData, 1440, 270), 0x00FF00));
    EXPECT_TRUE(near(pixelAt(frame.imageData, 480, 810), 0x0000FF));
    EXPECT_TRUE(near(pixelAt(frame.imageData, 1440, 810), 0xFFFFFF));

    // Streaming: nothing drawn → nothing sent; a one-shot request is always answered.
    EXPECT_EQ(provider.capture(0.5f, true, 7).status, ZEKTCapturedFrame::Status::unchanged);
    EXPECT_EQ(provider.capture(0.5f, false, 8).status, ZEKTCapturedFrame::Status::ok);
    client.fill(w, 0x000000, 100, 100, 10, 10);
    const ZEKTCapturedFrame changed = provider.capture(0.9f, true, 7);
    ASSERT_EQ(changed.status, ZEKTCapturedFrame::Status::ok);
    EXPECT_TRUE(near(pixelAt(changed.imageData, 105, 105), 0x000000));
    // Same quality, one band changed: the frame is spliced from kept bands and the new one.
    client.fill(w, 0xFFFF00, 1500, 900, 20, 20);
    const ZEKTCapturedFrame spliced = provider.capture(0.9f, true, 7);
    ASSERT_EQ(spliced.status, ZEKTCapturedFrame::Status::ok);
    EXPECT_TRUE(near(pixelAt(spliced.imageData, 1510, 910), 0xFFFF00));
    EXPECT_TRUE(near(pixelAt(spliced.imageData, 105, 105), 0x000000));
    EXPECT_TRUE(near(pixelAt(spliced.imageData, 480, 270), 0xFF0000));
    EXPECT_TRUE(near(pixelAt(spliced.imageData, 1440, 1070), 0xFFFFFF));
    // Drawing the same pixels again is damage without change.
    client.fill(w, 0x000000, 100, 100, 10, 10);
    EXPECT_EQ(provider.capture(0.5f, true, 7).status, ZEKTCapturedFrame::Status::unchanged);
    // Back and forth: each frame is compared with the one just before it, not an older one.
    for (const quint32 colour : {0xFF0000u, 0x000000u, 0xFF0000u}) {
        client.fill(w, colour, 100, 100, 10, 10);
        const ZEKTCapturedFrame next = provider.capture(0.9f, true, 7);
        ASSERT_EQ(next.status, ZEKTCapturedFrame::Status::ok);
        EXPECT_TRUE(near(pixelAt(next.imageData, 105, 105), colour));
    }
}

TEST_F(X11ProvidersTest, PointerAndClicksLandWhereAsked)
{
    TestClient client;
    const xcb_window_t w = client.window(
        0, 0, 1920, 1080, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE);
    X11InputProvider input;
    std::optional<QString> error;
    QDeadlineTimer deadline(10000);
    do {
        error = input.mouseMove(300, 1080 - 200, 0, 0);
    } while (error && !deadline.hasExpired() && (QThread::msleep(100), true));
    ASSERT_FALSE(error) << error->toStdString();
    auto *pointer = xcb_query_pointer_reply(
        client.c, xcb_query_pointer(client.c, client.screen->root), nullptr);
    ASSERT_TRUE(pointer);
    EXPECT_EQ(pointer->root_x, 300);
    EXPECT_EQ(pointer->root_y, 200); // y flipped from the bottom-left origin
    std::free(pointer);

    const struct {
        int button;
        quint8 xButton;
    } cases[] = {{0, 1}, {1, 3}, {2, 2}};
    for (const auto &c : cases) {
        ASSERT_FALSE(input.mouseButton(1000, 1080 - 700, c.button, true));
        auto *press =
            reinterpret_cast<xcb_button_press_event_t *>(client.waitFor(XCB_BUTTON_PRESS));
        ASSERT_TRUE(press);
        EXPECT_EQ(press->detail, c.xButton);
        EXPECT_EQ(press->event, w);
        EXPECT_EQ(press->root_x, 1000);
        EXPECT_EQ(press->root_y, 700);
        std::free(press);
        ASSERT_FALSE(input.mouseButton(1010, 1080 - 710, c.button, false));
        auto *release =
            reinterpret_cast<xcb_button_release_event_t *>(client.waitFor(XCB_BUTTON_RELEASE));
        ASSERT_TRUE(release);
        EXPECT_EQ(release->root_x, 1010); // moved before the release
        std::free(release);
    }
}

TEST_F(X11ProvidersTest, KeysReachTheFocusedWindowWithTheirModifiers)
{
    TestClient client;
    const xcb_window_t w =
        client.window(0, 0, 400, 300, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE);
    xcb_set_input_focus(client.c, XCB_INPUT_FOCUS_POINTER_ROOT, w, XCB_CURRENT_TIME);
    client.sync();
    X11InputProvider input;
    std::optional<QString> error;
    QDeadlineTimer deadline(10000);
    do {
        error = input.key(0x00, true, 0x20000 | 0x100); // shift+A, device bits ignored
    } while (error && !deadline.hasExpired() && (QThread::msleep(100), true));
    ASSERT_FALSE(error) << error->toStdString();
    // Shift goes down first, then A with Shift in its state.
    auto *shift = reinterpret_cast<xcb_key_press_event_t *>(client.waitFor(XCB_KEY_PRESS));
    ASSERT_TRUE(shift);
    EXPECT_EQ(shift->detail, 42 + 8);
    std::free(shift);
    auto *a = reinterpret_cast<xcb_key_press_event_t *>(client.waitFor(XCB_KEY_PRESS));
    ASSERT_TRUE(a);
    EXPECT_EQ(a->detail, 30 + 8);
    EXPECT_TRUE(a->state & XCB_MOD_MASK_SHIFT);
    std::free(a);
    ASSERT_FALSE(input.key(0x00, false, 0x20000));

    ASSERT_FALSE(input.key(51, true, 0)); // BackSpace, no modifier
    auto *backspace = reinterpret_cast<xcb_key_press_event_t *>(client.waitFor(XCB_KEY_PRESS));
    ASSERT_TRUE(backspace);
    EXPECT_EQ(backspace->detail, 14 + 8);
    EXPECT_FALSE(backspace->state & XCB_MOD_MASK_SHIFT); // Shift was released again
    std::free(backspace);
    EXPECT_TRUE(input.key(0x3F, true, 0).has_value()); // Fn has no X key
}

TEST_F(X11ProvidersTest, DisplayThatGoesAndComesBackIsReconnected)
{
    X11ScreenProvider provider;
    X11DisplayFactsSource facts;
    ASSERT_EQ(captureWhenReady(provider, false, 1).status, ZEKTCapturedFrame::Status::ok);
    const DisplayFacts up = facts.query();
    EXPECT_TRUE(up.captureAvailable);
    EXPECT_TRUE(up.inputAvailable);
    EXPECT_EQ(up.mainResolution, QStringLiteral("1920x1080"));
    EXPECT_GE(up.displayCount.value_or(0), 1u);
    EXPECT_TRUE(up.activeProcess.isEmpty()); // no window manager, no active window

    // The front application is the process owning the active window.
    TestClient client;
    const xcb_window_t w = client.window(0, 0, 10, 10, 0);
    auto atom = [&](const char *name) {
        auto *r = xcb_intern_atom_reply(
            client.c, xcb_intern_atom(client.c, 0, quint16(strlen(name)), name), nullptr);
        const xcb_atom_t a = r->atom;
        std::free(r);
        return a;
    };
    const quint32 pid = quint32(getpid());
    xcb_change_property(client.c, XCB_PROP_MODE_REPLACE, w, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL,
                        32, 1, &pid);
    xcb_change_property(client.c, XCB_PROP_MODE_REPLACE, client.screen->root,
                        atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &w);
    client.sync();
    QFile comm(QStringLiteral("/proc/self/comm"));
    ASSERT_TRUE(comm.open(QIODevice::ReadOnly));
    EXPECT_EQ(facts.query().activeProcess, QString::fromUtf8(comm.readAll()).trimmed());

    xvfb.stop();
    const ZEKTCapturedFrame gone = provider.capture(0.5f, false, 1);
    EXPECT_EQ(gone.status, ZEKTCapturedFrame::Status::failed);
    EXPECT_FALSE(gone.error.isEmpty());
    EXPECT_FALSE(facts.query().captureAvailable);

    ASSERT_TRUE(xvfb.restart());
    EXPECT_EQ(captureWhenReady(provider, false, 1).status, ZEKTCapturedFrame::Status::ok);
}

TEST_F(X11ProvidersTest, WaylandSessionIsReportedNotCaptured)
{
    qputenv("XDG_SESSION_TYPE", "wayland");
    X11ScreenProvider provider;
    const ZEKTCapturedFrame frame = provider.capture(0.5f, false, 1);
    qunsetenv("XDG_SESSION_TYPE");
    EXPECT_EQ(frame.status, ZEKTCapturedFrame::Status::failed);
    EXPECT_TRUE(frame.error.contains(QStringLiteral("Wayland")));
    EXPECT_TRUE(frame.imageData.isEmpty());
}
