#pragma once

#include <QElapsedTimer>
#include <QString>
#include <optional>

struct xcb_connection_t;
struct xcb_screen_t;

// One XCB connection to the display named by DISPLAY, reopened when the X server goes
// away or comes back. Not thread-safe: each user owns one and guards it.
class X11Connection {
public:
    X11Connection() = default;
    ~X11Connection();
    X11Connection(const X11Connection &) = delete;
    X11Connection &operator=(const X11Connection &) = delete;

    // Why no X11 screen can be used in this session at all (Wayland, no DISPLAY);
    // none when an X server may be reachable.
    static std::optional<QString> sessionUnavailableReason();

    // Connects (or reconnects after an error) at most once a second; null with the
    // reason in lastError() when the display is not reachable.
    xcb_connection_t *ensure();
    xcb_screen_t *screen() const { return m_screen; }
    // The open connection without reconnecting; null when there is none.
    xcb_connection_t *current() const { return m_connection; }
    // Drops the connection, e.g. after a failed request; the next ensure() reconnects.
    // `reason` is reported until then.
    void reset(const QString &reason = QString());
    QString lastError() const { return m_lastError; }
    // Counts successful connects, so users can rebuild per-connection state.
    quint64 generation() const { return m_generation; }

private:
    xcb_connection_t *m_connection = nullptr;
    xcb_screen_t *m_screen = nullptr;
    QElapsedTimer m_sinceAttempt;
    QString m_lastError;
    quint64 m_generation = 0;
};
