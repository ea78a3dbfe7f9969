#include "ZEKTTlsClient.h"

#include "ZEKTClientCallbacks.h"
#include "ZEKTClientSession.h"
#include "ZEKTIoThreads.h"
#include "ZEKTMailbox.h"
#include "ZEKTRequest.h"

#include <QThread>

std::shared_ptr<ZEKTClient> ZEKTClient::create(const QString &host, quint16 port)
{
    const QString trimmed = host.trimmed();
    if (trimmed.isEmpty())
        throw ZEKTError(QStringLiteral("The host name is empty"));
    if (trimmed.size() > 253 || std::any_of(trimmed.cbegin(), trimmed.cend(), [](QChar c) {
            return c.isSpace() || c.category() == QChar::Other_Control;
        }))
        throw ZEKTError(QStringLiteral("\"%1\" is not a valid host name").arg(host));
    if (port == 0)
        throw ZEKTError(QStringLiteral("Port 0 is not a valid agent port"));
    return std::make_shared<ZEKTTlsClient>(trimmed, port);
}

ZEKTTlsClient::ZEKTTlsClient(const QString &host, quint16 port)
    : m_callbacks(std::make_shared<ZEKTClientCallbacks>())
{
    m_session = new ZEKTClientSession(host, port, m_callbacks);
    m_mailbox = m_session->mailbox();
    m_session->moveToThread(ZEKTIoThreads::next());
}

ZEKTTlsClient::~ZEKTTlsClient()
{
    disconnect();
}

QFuture<void> ZEKTTlsClient::post(Work work)
{
    const auto promise = ZEKTClientSession::makePromise();
    QFuture<void> future = promise->future();
    if (m_disconnected.load()) {
        ZEKTClientSession::fail(promise, QStringLiteral("The session was closed"), ENOTCONN);
        return future;
    }
    ZEKTClientSession *session = m_session;
    // If the session is gone before the work runs, the promise fails when dropped.
    m_mailbox->post([session, promise, work = std::move(work)] { work(session, promise); });
    return future;
}

QFuture<void> ZEKTTlsClient::command(const ZEKTRequest &request)
{
    return post([request](ZEKTClientSession *s, const auto &p) { s->sendCommand(request, p); });
}

QFuture<void> ZEKTTlsClient::connect()
{
    return post([](ZEKTClientSession *s, const auto &p) { s->connectToAgent(p); });
}

QFuture<void> ZEKTTlsClient::authenticate(const QString &username, const QString &password)
{
    return post([username, password](ZEKTClientSession *s, const auto &p) {
        s->authenticate(username, password, p);
    });
}

void ZEKTTlsClient::disconnect() noexcept
{
    try {
        if (m_disconnected.exchange(true))
            return;
        m_callbacks->close();
        ZEKTClientSession *session = m_session;
        m_mailbox->post([session] { session->shutdown(); });
    } catch (...) {
        // Never throws: a failed post leaves a session that the I/O thread's end deletes.
    }
}

ZEKT::ConnectionState ZEKTTlsClient::connectionState() const
{
    return m_callbacks->state();
}

void ZEKTTlsClient::setStateUpdateHandler(StateUpdateHandler handler)
{
    m_callbacks->setStateUpdateHandler(std::move(handler));
}
void ZEKTTlsClient::setMessageHandler(MessageHandler handler)
{
    m_callbacks->setMessageHandler(std::move(handler));
}
void ZEKTTlsClient::setLogFunction(LogFunction function)
{
    m_callbacks->setLogFunction(std::move(function));
}
void ZEKTTlsClient::setOnServerIdentityMismatch(IdentityMismatchHandler handler)
{
    m_callbacks->setIdentityMismatchHandler(std::move(handler));
}

QFuture<void> ZEKTTlsClient::requestScreenCapture(quint32 displayID)
{
    ZEKTRequest r;
    r.kind = ZEKTRequest::Kind::screenCapture;
    r.displayID = displayID;
    return command(r);
}

QFuture<void> ZEKTTlsClient::startContinuousStreaming(quint32 displayID, float quality,
                                                      double frameRate)
{
    if (!(quality >= 0.0f && quality <= 1.0f) || !(frameRate > 0.0 && frameRate <= 120.0)) {
        const auto promise = ZEKTClientSession::makePromise();
        ZEKTClientSession::fail(promise,
                                QStringLiteral("Streaming needs a quality between 0 and 1 and a "
                                               "frame rate above 0 and at most 120"),
                                EINVAL);
        return promise->future();
    }
    ZEKTRequest r;
    r.kind = ZEKTRequest::Kind::startStreaming;
    r.displayID = displayID;
    r.quality = quality;
    r.frameRate = frameRate;
    return command(r);
}

QFuture<void> ZEKTTlsClient::stopContinuousStreaming()
{
    ZEKTRequest r;
    r.kind = ZEKTRequest::Kind::stopStreaming;
    return command(r);
}

QFuture<void> ZEKTTlsClient::sendMouseEvent(double x, double y, int button, bool pressed)
{
    ZEKTRequest r;
    r.kind = ZEKTRequest::Kind::mouseButton;
    r.x = x;
    r.y = y;
    r.button = button;
    r.pressed = pressed;
    return command(r);
}

QFuture<void> ZEKTTlsClient::sendMouseMoveEvent(double x, double y, double deltaX, double deltaY)
{
    ZEKTRequest r;
    r.kind = ZEKTRequest::Kind::mouseMove;
    r.x = x;
    r.y = y;
    r.deltaX = deltaX;
    r.deltaY = deltaY;
    return command(r);
}

QFuture<void> ZEKTTlsClient::sendKeyboardEvent(quint16 keyCode, bool pressed, quint32 modifiers)
{
    ZEKTRequest r;
    r.kind = ZEKTRequest::Kind::key;
    r.keyCode = keyCode;
    r.pressed = pressed;
    r.modifiers = modifiers;
    return command(r);
}

QFuture<void> ZEKTTlsClient::sendFileTransfer(const QString &filePath,
                                              const std::optional<QString> &remoteFileName,
                                              ProgressFunction progress)
{
    return post([filePath, remoteFileName, progress](ZEKTClientSession *s, const auto &p) {
        s->sendFile(filePath, remoteFileName, progress, p);
    });
}
