#include "X11InputProvider.h"

#include "input/MacKeyCodeTable.h"

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

quint8 X11InputProvider::xButton(int button)
{
    switch (button) {
    case 0:
        return 1;
    case 1:
        return 3;
    case 2:
        return 2;
    default:
        return button >= 3 && button <= 250 ? quint8(button + 5) : 0;
    }
}

void X11InputProvider::toXPoint(double x, double y, int width, int height, int &outX, int &outY)
{
    const double fx = std::isfinite(x) ? x : 0.0;
    const double fy = std::isfinite(y) ? y : 0.0;
    outX = int(std::clamp(std::floor(fx), 0.0, double(std::max(0, width - 1))));
    outY = int(std::clamp(std::floor(double(height) - fy), 0.0, double(std::max(0, height - 1))));
}

std::optional<QString> X11InputProvider::ready()
{
    xcb_connection_t *c = m_x.ensure();
    if (!c)
        return m_x.lastError();
    const xcb_query_extension_reply_t *test = xcb_get_extension_data(c, &xcb_test_id);
    if (!test || !test->present)
        return QStringLiteral("The X display does not accept synthetic input (no XTEST)");
    return std::nullopt;
}

std::optional<QString> X11InputProvider::fake(quint8 type, quint8 detail, int x, int y)
{
    xcb_connection_t *c = m_x.current();
    if (!c || !m_x.screen())
        return QStringLiteral("The X display connection was lost");
    const xcb_window_t root = type == XCB_MOTION_NOTIFY ? m_x.screen()->root : XCB_NONE;
    const auto cookie = xcb_test_fake_input_checked(c, type, detail, XCB_CURRENT_TIME, root,
                                                    qint16(x), qint16(y), 0);
    if (xcb_generic_error_t *error = xcb_request_check(c, cookie)) {
        const int code = error->error_code;
        std::free(error);
        return QStringLiteral("The X server refused the input event (error %1)").arg(code);
    }
    if (xcb_connection_has_error(c)) {
        m_x.reset(QStringLiteral("The X display connection was lost"));
        return m_x.lastError();
    }
    return std::nullopt;
}

std::optional<QString> X11InputProvider::moveTo(double x, double y)
{
    if (!m_x.screen())
        return QStringLiteral("The X display connection was lost");
    int px = 0, py = 0;
    toXPoint(x, y, m_x.screen()->width_in_pixels, m_x.screen()->height_in_pixels, px, py);
    return fake(XCB_MOTION_NOTIFY, 0, px, py);
}

std::optional<QString> X11InputProvider::mouseButton(double x, double y, int button, bool pressed)
{
    QMutexLocker lock(&m_mutex);
    if (auto error = ready())
        return error;
    const quint8 xb = xButton(button);
    if (xb == 0)
        return QStringLiteral("Unknown mouse button %1").arg(button);
    // Drags are not forwarded, so the pointer goes to the spot before every press and release.
    if (auto error = moveTo(x, y))
        return error;
    return fake(pressed ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, xb);
}

std::optional<QString> X11InputProvider::mouseMove(double x, double y, double, double)
{
    QMutexLocker lock(&m_mutex);
    if (auto error = ready())
        return error;
    return moveTo(x, y);
}

std::optional<QString> X11InputProvider::key(quint16 keyCode, bool pressed, quint32 modifiers)
{
    QMutexLocker lock(&m_mutex);
    if (auto error = ready())
        return error;
    const auto keycode = MacKeyCodeTable::xKeycodeFromMac(keyCode);
    if (!keycode)
        return QStringLiteral("Key code %1 has no key on this computer").arg(keyCode);
    if (MacKeyCodeTable::isModifierKey(keyCode) || !pressed)
        return fake(pressed ? XCB_KEY_PRESS : XCB_KEY_RELEASE, *keycode);

    xcb_connection_t *c = m_x.current();
    const MacKeyCodeTable::Modifiers wanted = MacKeyCodeTable::modifiersFromFlags(modifiers);
    // Caps Lock is a state: toggle it only when the remote one differs.
    auto *pointer = xcb_query_pointer_reply(c, xcb_query_pointer(c, m_x.screen()->root), nullptr);
    const bool capsOn = pointer && (pointer->mask & XCB_MOD_MASK_LOCK);
    std::free(pointer);
    if (wanted.capsLock != capsOn) {
        const quint8 caps = *MacKeyCodeTable::xKeycodeFromMac(MacKeyCodeTable::kVKCapsLock);
        if (auto error = fake(XCB_KEY_PRESS, caps))
            return error;
        if (auto error = fake(XCB_KEY_RELEASE, caps))
            return error;
    }

    // Modifier changes alone never arrive, so hold the flagged ones around this key.
    std::vector<quint8> held;
    const std::pair<bool, quint16> mods[] = {{wanted.shift, MacKeyCodeTable::kVKShift},
                                             {wanted.control, MacKeyCodeTable::kVKControl},
                                             {wanted.option, MacKeyCodeTable::kVKOption},
                                             {wanted.command, MacKeyCodeTable::kVKCommand}};
    std::optional<QString> error;
    for (const auto &[on, mac] : mods) {
        if (!on || error)
            continue;
        const quint8 code = *MacKeyCodeTable::xKeycodeFromMac(mac);
        error = fake(XCB_KEY_PRESS, code);
        if (!error)
            held.push_back(code);
    }
    if (!error)
        error = fake(XCB_KEY_PRESS, *keycode);
    for (auto it = held.rbegin(); it != held.rend(); ++it) {
        if (auto releaseError = fake(XCB_KEY_RELEASE, *it); releaseError && !error)
            error = releaseError;
    }
    return error;
}
