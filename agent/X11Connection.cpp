#include "X11Connection.h"

#include <xcb/xcb.h>

X11Connection::~X11Connection()
{
    reset();
}

std::optional<QString> X11Connection::sessionUnavailableReason()
{
    const QByteArray sessionType = qgetenv("XDG_SESSION_TYPE");
    if (sessionType == "wayland")
        return QStringLiteral("Screen capture and input are not available on a Wayland session");
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return QStringLiteral("No display available (DISPLAY is not set)");
    return std::nullopt;
}

void X11Connection::reset(const QString &reason)
{
    if (!reason.isEmpty())
        m_lastError = reason;
    if (m_connection)
        xcb_disconnect(m_connection);
    m_connection = nullptr;
    m_screen = nullptr;
}

xcb_connection_t *X11Connection::ensure()
{
    if (m_connection && !xcb_connection_has_error(m_connection))
        return m_connection;
    if (m_connection) {
        reset();
        m_lastError = QStringLiteral("The X display connection was lost");
    }
    if (const auto reason = sessionUnavailableReason()) {
        m_lastError = *reason;
        return nullptr;
    }
    // A display that is not there yet is retried once a second, not on every frame.
    if (m_sinceAttempt.isValid() && m_sinceAttempt.elapsed() < 1000)
        return nullptr;
    m_sinceAttempt.start();

    int screenNumber = 0;
    xcb_connection_t *connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        m_lastError = QStringLiteral("Cannot connect to the X display %1")
                          .arg(QString::fromLocal8Bit(qgetenv("DISPLAY")));
        return nullptr;
    }
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber && it.rem; ++i)
        xcb_screen_next(&it);
    if (!it.rem) {
        xcb_disconnect(connection);
        m_lastError = QStringLiteral("The X display has no screen");
        return nullptr;
    }
    m_connection = connection;
    m_screen = it.data;
    m_lastError.clear();
    ++m_generation;
    return m_connection;
}
