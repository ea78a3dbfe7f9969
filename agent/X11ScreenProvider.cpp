#include "X11ScreenProvider.h"

#include <xcb/damage.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

X11ScreenProvider::X11ScreenProvider() = default;

X11ScreenProvider::~X11ScreenProvider()
{
    QMutexLocker lock(&m_mutex);
    releaseBuffers();
}

void X11ScreenProvider::releaseBuffers()
{
    xcb_connection_t *c = m_x.current();
    const bool attached = c && m_setUpGeneration == m_x.generation();
    for (SharedSegment &segment : m_shm) {
        if (!segment.address)
            continue;
        if (attached)
            xcb_shm_detach(c, segment.seg);
        shmdt(segment.address);
        segment = {};
    }
    m_shmSize = 0;
    for (QByteArray &pixels : m_getImageReply)
        pixels = QByteArray();
    m_nextBuffer = 0;
    m_previous = {};
    m_encoder.releaseMemory();
}

bool X11ScreenProvider::attachSegment(SharedSegment &segment, size_t bytes)
{
    const int id = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (id < 0)
        return false;
    void *address = shmat(id, nullptr, 0);
    // Marked for removal now: it disappears once both sides detach, even on a crash.
    shmctl(id, IPC_RMID, nullptr);
    if (address == reinterpret_cast<void *>(-1))
        return false;
    xcb_connection_t *c = m_x.current();
    const quint32 seg = xcb_generate_id(c);
    if (xcb_generic_error_t *error =
            xcb_request_check(c, xcb_shm_attach_checked(c, seg, quint32(id), 0))) {
        // A remote X server cannot see our memory.
        std::free(error);
        shmdt(address);
        return false;
    }
    segment = {seg, static_cast<uchar *>(address)};
    return true;
}

bool X11ScreenProvider::setUpConnection()
{
    xcb_connection_t *c = m_x.ensure();
    if (!c)
        return false;
    if (m_setUpGeneration == m_x.generation())
        return true;
    // A new connection: shared memory and damage objects of the old one are gone.
    for (SharedSegment &segment : m_shm) {
        if (segment.address)
            shmdt(segment.address);
        segment = {};
    }
    m_shmSize = 0;
    m_previous = {};
    m_streamDamageSeen.clear();
    m_setUpGeneration = m_x.generation();

    const xcb_query_extension_reply_t *shm = xcb_get_extension_data(c, &xcb_shm_id);
    m_useShm = shm && shm->present;
    const xcb_query_extension_reply_t *damage = xcb_get_extension_data(c, &xcb_damage_id);
    m_useDamage = false;
    if (damage && damage->present) {
        auto cookie =
            xcb_damage_query_version(c, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION);
        if (auto *reply = xcb_damage_query_version_reply(c, cookie, nullptr)) {
            std::free(reply);
            m_damage = xcb_generate_id(c);
            const auto check = xcb_damage_create_checked(c, m_damage, m_x.screen()->root,
                                                         XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
            if (xcb_generic_error_t *error = xcb_request_check(c, check))
                std::free(error);
            else {
                m_useDamage = true;
                m_damageEventBase = damage->first_event;
            }
        }
    }
    return true;
}

void X11ScreenProvider::drainDamage()
{
    xcb_connection_t *c = m_x.current();
    bool damaged = false;
    while (xcb_generic_event_t *event = xcb_poll_for_event(c)) {
        if ((event->response_type & 0x7f) == m_damageEventBase + XCB_DAMAGE_NOTIFY)
            damaged = true;
        std::free(event);
    }
    if (damaged) {
        // Re-arm before grabbing: drawing from now on reports again.
        xcb_damage_subtract(c, m_damage, XCB_NONE, XCB_NONE);
        xcb_flush(c);
        ++m_damageCount;
    }
}

bool X11ScreenProvider::grab(Image &image, QString &error)
{
    xcb_connection_t *c = m_x.current();
    xcb_screen_t *screen = m_x.screen();
    if (!c || !screen || xcb_connection_has_error(c)) {
        error = QStringLiteral("The X display connection was lost");
        return false;
    }
    const int width = screen->width_in_pixels;
    const int height = screen->height_in_pixels;
    const size_t bytes = size_t(width) * size_t(height) * 4;

    if (m_useShm && m_shmSize != bytes) {
        releaseBuffers(); // segments of another screen size do not fit
        m_shmSize = bytes;
    }
    const int index = m_nextBuffer;
    // Attached when first grabbed into: one-shot captures, which release the buffers
    // afterwards, never need the second segment.
    if (m_useShm && !m_shm[index].address && !attachSegment(m_shm[index], bytes)) {
        releaseBuffers();
        m_useShm = false; // GetImage from now on
    }
    if (m_useShm) {
        auto cookie = xcb_shm_get_image(c, screen->root, 0, 0, quint16(width), quint16(height), ~0u,
                                        XCB_IMAGE_FORMAT_Z_PIXMAP, m_shm[index].seg, 0);
        xcb_generic_error_t *xError = nullptr;
        auto *reply = xcb_shm_get_image_reply(c, cookie, &xError);
        if (reply && reply->depth >= 24) {
            std::free(reply);
            image = {m_shm[index].address, width, height, width * 4};
            m_nextBuffer = 1 - index;
            return true;
        }
        std::free(reply);
        std::free(xError);
        error = QStringLiteral("The X server did not return the screen image");
        return false;
    }

    auto cookie = xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0, quint16(width),
                                quint16(height), ~0u);
    xcb_generic_error_t *xError = nullptr;
    auto *reply = xcb_get_image_reply(c, cookie, &xError);
    if (!reply || reply->depth < 24 || size_t(xcb_get_image_data_length(reply)) < bytes) {
        std::free(reply);
        std::free(xError);
        error = QStringLiteral("The X server did not return the screen image");
        return false;
    }
    m_getImageReply[index] =
        QByteArray(reinterpret_cast<const char *>(xcb_get_image_data(reply)), qsizetype(bytes));
    std::free(reply);
    image = {reinterpret_cast<const uchar *>(m_getImageReply[index].constData()), width, height,
             width * 4};
    m_nextBuffer = 1 - index;
    return true;
}

ZEKTCapturedFrame X11ScreenProvider::capture(float quality, bool skipIfUnchanged,
                                             quintptr streamKey)
{
    QMutexLocker lock(&m_mutex);
    if (skipIfUnchanged)
        m_streaming.insert(streamKey);
    ZEKTCapturedFrame frame = captureLocked(quality, skipIfUnchanged, streamKey);
    // The two 8 MB screen buffers are kept only while someone streams.
    if (m_streaming.isEmpty())
        releaseBuffers();
    return frame;
}

ZEKTCapturedFrame X11ScreenProvider::captureLocked(float quality, bool skipIfUnchanged,
                                                   quintptr streamKey)
{
    ZEKTCapturedFrame frame;
    if (!setUpConnection()) {
        frame.error = m_x.lastError();
        return frame;
    }
    const xcb_setup_t *setup = xcb_get_setup(m_x.current());
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST ||
        (m_x.screen()->root_depth != 24 && m_x.screen()->root_depth != 32)) {
        frame.error = QStringLiteral("The X display uses a pixel format the agent cannot capture");
        return frame;
    }

    if (m_useDamage) {
        drainDamage();
        if (skipIfUnchanged) {
            const auto seen = m_streamDamageSeen.constFind(streamKey);
            if (seen != m_streamDamageSeen.constEnd() && seen.value() == m_damageCount) {
                frame.status = ZEKTCapturedFrame::Status::unchanged;
                return frame;
            }
        }
        m_streamDamageSeen.insert(streamKey, m_damageCount);
    }

    Image image;
    if (!grab(image, frame.error)) {
        m_previous = {};
        m_x.reset(frame.error); // the server may have gone; reconnect on the next request
        return frame;
    }
    const bool comparable = m_previous.pixels && m_previous.width == image.width &&
                            m_previous.height == image.height && m_previous.stride == image.stride;
    const BandedJpegEncoder::BandMask changed =
        BandedJpegEncoder::changedBands(image.pixels, comparable ? m_previous.pixels : nullptr,
                                        image.width, image.height, image.stride);
    m_previous = image;
    if (std::find(changed.begin(), changed.end(), true) != changed.end())
        ++m_version;
    if (!m_changes.update(streamKey, m_version) && skipIfUnchanged) {
        frame.status = ZEKTCapturedFrame::Status::unchanged;
        return frame;
    }
    frame.imageData =
        m_encoder.encode(image.pixels, image.width, image.height, image.stride, quality, changed);
    if (frame.imageData.isEmpty()) {
        frame.error = m_encoder.lastError();
        m_changes.forget(streamKey);
        return frame;
    }
    frame.status = ZEKTCapturedFrame::Status::ok;
    frame.width = quint32(image.width);
    frame.height = quint32(image.height);
    return frame;
}

void X11ScreenProvider::endStream(quintptr streamKey)
{
    m_changes.forget(streamKey);
    QMutexLocker lock(&m_mutex);
    m_streamDamageSeen.remove(streamKey);
    m_streaming.remove(streamKey);
    if (m_streaming.isEmpty())
        releaseBuffers();
}
