#include "X11DisplayFactsSource.h"

#include <QFile>

#include <xcb/randr.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <cstring>

namespace {

xcb_atom_t atom(xcb_connection_t *c, const char *name)
{
    auto *reply =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 1, quint16(strlen(name)), name), nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return result;
}

// The value of a 32-bit property, or none.
std::optional<quint32> cardinalProperty(xcb_connection_t *c, xcb_window_t window,
                                        xcb_atom_t property, xcb_atom_t type)
{
    if (property == XCB_ATOM_NONE)
        return std::nullopt;
    auto *reply =
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, property, type, 0, 1), nullptr);
    std::optional<quint32> value;
    if (reply && reply->format == 32 && xcb_get_property_value_length(reply) >= 4)
        value = *static_cast<const quint32 *>(xcb_get_property_value(reply));
    std::free(reply);
    return value;
}

} // namespace

QString X11DisplayFactsSource::activeProcess()
{
    xcb_connection_t *c = m_x.current();
    const auto window =
        cardinalProperty(c, m_x.screen()->root, atom(c, "_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (!window || *window == XCB_NONE)
        return {};
    if (const auto pid = cardinalProperty(c, *window, atom(c, "_NET_WM_PID"), XCB_ATOM_CARDINAL)) {
        QFile comm(QStringLiteral("/proc/%1/comm").arg(*pid));
        if (comm.open(QIODevice::ReadOnly))
            return QString::fromUtf8(comm.readAll()).trimmed();
    }
    // A remote client or no pid: the window's class name ("instance\0Class\0").
    auto *reply = xcb_get_property_reply(
        c, xcb_get_property(c, 0, *window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256), nullptr);
    QString name;
    if (reply && reply->format == 8) {
        const QByteArray raw(static_cast<const char *>(xcb_get_property_value(reply)),
                             xcb_get_property_value_length(reply));
        const QList<QByteArray> parts = raw.split('\0');
        name =
            QString::fromUtf8(parts.size() > 1 && !parts[1].isEmpty() ? parts[1] : parts.value(0));
    }
    std::free(reply);
    return name;
}

DisplayFacts X11DisplayFactsSource::query()
{
    QMutexLocker lock(&m_mutex);
    DisplayFacts facts;
    xcb_connection_t *c = m_x.ensure();
    if (!c)
        return facts;
    xcb_screen_t *screen = m_x.screen();
    facts.captureAvailable = true;
    const xcb_query_extension_reply_t *test = xcb_get_extension_data(c, &xcb_test_id);
    facts.inputAvailable = test && test->present;

    quint32 monitors = 0;
    QString primary;
    const xcb_query_extension_reply_t *randr = xcb_get_extension_data(c, &xcb_randr_id);
    if (randr && randr->present) {
        auto *reply =
            xcb_randr_get_monitors_reply(c, xcb_randr_get_monitors(c, screen->root, 1), nullptr);
        if (reply) {
            for (auto it = xcb_randr_get_monitors_monitors_iterator(reply); it.rem;
                 xcb_randr_monitor_info_next(&it)) {
                ++monitors;
                if (primary.isEmpty() || it.data->primary)
                    primary = QStringLiteral("%1x%2").arg(it.data->width).arg(it.data->height);
            }
            std::free(reply);
        }
    }
    if (monitors == 0) {
        monitors = 1;
        primary =
            QStringLiteral("%1x%2").arg(screen->width_in_pixels).arg(screen->height_in_pixels);
    }
    facts.displayCount = monitors;
    facts.mainResolution = primary;
    facts.activeProcess = activeProcess();
    // A server that went away shows up only when a request fails.
    if (xcb_connection_has_error(c)) {
        m_x.reset(QStringLiteral("The X display connection was lost"));
        return DisplayFacts{};
    }
    return facts;
}
