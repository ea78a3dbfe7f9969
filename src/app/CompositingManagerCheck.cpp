#include "CompositingManagerCheck.h"

#include <QGuiApplication>
#include <QPointer>
#include <cstdlib>

#ifdef TELVANE_HAVE_XCB
#include <xcb/xcb.h>
#include <xcb/xcbext.h> // xcb_poll_for_reply
#endif

namespace {

// The X server answers a local connection within a millisecond or two; a second without an
// answer means it will not come.
constexpr int pollInterval = 2;
constexpr int maximumPolls = 500;

#ifdef TELVANE_HAVE_XCB
xcb_connection_t *x11Connection()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}
#endif

} // namespace

void CompositingManagerCheck::ask(QObject *context, Answer answer)
{
    auto *check = new CompositingManagerCheck(context, std::move(answer));
    QMetaObject::invokeMethod(check, &CompositingManagerCheck::start, Qt::QueuedConnection);
}

int CompositingManagerCheck::x11ScreenNumber(QByteArrayView display)
{
    const qsizetype colon = display.lastIndexOf(':');
    if (colon < 0)
        return 0;
    const QByteArrayView rest = display.sliced(colon + 1);
    const qsizetype dot = rest.indexOf('.');
    if (dot < 0)
        return 0;
    bool ok = false;
    const int screen = rest.sliced(dot + 1).toInt(&ok);
    return ok && screen >= 0 ? screen : 0;
}

CompositingManagerCheck::CompositingManagerCheck(QObject *context, Answer answer)
    : QObject(context), m_answer(std::move(answer))
{
    m_poll.setInterval(pollInterval);
    connect(&m_poll, &QTimer::timeout, this, &CompositingManagerCheck::poll);
}

void CompositingManagerCheck::start()
{
    const QString platform = QGuiApplication::platformName();
    if (platform.startsWith(QLatin1String("wayland")))
        return finish(QStringLiteral("on Wayland a window cannot be placed over the screen"));
    if (platform != QLatin1String("xcb"))
        return finish(
            QStringLiteral("the platform \"%1\" has no compositing manager").arg(platform));
#ifdef TELVANE_HAVE_XCB
    xcb_connection_t *connection = x11Connection();
    if (!connection || xcb_connection_has_error(connection))
        return finish(QStringLiteral("there is no usable X11 connection"));
    const QByteArray selection =
        "_NET_WM_CM_S" + QByteArray::number(x11ScreenNumber(qgetenv("DISPLAY")));
    m_atomRequest =
        xcb_intern_atom(connection, 0, uint16_t(selection.size()), selection.data()).sequence;
    xcb_flush(connection);
    m_poll.start();
#else
    finish(QStringLiteral("this build cannot ask the X server"));
#endif
}

void CompositingManagerCheck::poll()
{
#ifdef TELVANE_HAVE_XCB
    xcb_connection_t *connection = x11Connection();
    if (!connection || xcb_connection_has_error(connection))
        return finish(QStringLiteral("the X11 connection broke"));
    const unsigned request = m_ownerRequest ? m_ownerRequest : m_atomRequest;
    if (++m_polls > maximumPolls) {
        xcb_discard_reply(connection, request);
        return finish(QStringLiteral("the X server did not answer"));
    }
    void *reply = nullptr;
    xcb_generic_error_t *error = nullptr;
    if (!xcb_poll_for_reply(connection, request, &reply, &error))
        return;
    std::free(error);
    if (!reply)
        return finish(QStringLiteral("the X server refused the question"));

    if (!m_ownerRequest) {
        const xcb_atom_t atom = static_cast<xcb_intern_atom_reply_t *>(reply)->atom;
        std::free(reply);
        m_ownerRequest = xcb_get_selection_owner(connection, atom).sequence;
        xcb_flush(connection);
        return;
    }
    const xcb_window_t owner = static_cast<xcb_get_selection_owner_reply_t *>(reply)->owner;
    std::free(reply);
    finish(owner == XCB_NONE ? QStringLiteral("no compositing manager runs") : QString());
#endif
}

void CompositingManagerCheck::finish(const QString &whyNot)
{
    m_poll.stop();
    // The answer may end the context, and this check with it.
    const QPointer<CompositingManagerCheck> self(this);
    if (const Answer answer = std::exchange(m_answer, {}))
        answer(whyNot);
    if (self)
        deleteLater();
}
