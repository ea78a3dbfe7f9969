#pragma once

#include "ZEKTClient.h"

#include <atomic>

class ZEKTClientCallbacks;
class ZEKTClientSession;
class ZEKTMailbox;
struct ZEKTRequest;

// ZEKTClient over TLS 1.3. The calls may come from any thread: each one is posted to the
// session on its I/O thread and answered through a QFuture finished there.
class ZEKTTlsClient : public ZEKTClient {
public:
    ZEKTTlsClient(const QString &host, quint16 port);
    ~ZEKTTlsClient() override;

    QFuture<void> connect() override;
    QFuture<void> authenticate(const QString &username, const QString &password) override;
    void disconnect() noexcept override;
    ZEKT::ConnectionState connectionState() const override;

    void setStateUpdateHandler(StateUpdateHandler handler) override;
    void setMessageHandler(MessageHandler handler) override;
    void setLogFunction(LogFunction function) override;
    void setOnServerIdentityMismatch(IdentityMismatchHandler handler) override;

    QFuture<void> requestScreenCapture(quint32 displayID) override;
    QFuture<void> startContinuousStreaming(quint32 displayID, float quality,
                                           double frameRate) override;
    QFuture<void> stopContinuousStreaming() override;
    QFuture<void> sendMouseEvent(double x, double y, int button, bool pressed) override;
    QFuture<void> sendMouseMoveEvent(double x, double y, double deltaX, double deltaY) override;
    QFuture<void> sendKeyboardEvent(quint16 keyCode, bool pressed, quint32 modifiers) override;
    QFuture<void> sendFileTransfer(const QString &filePath,
                                   const std::optional<QString> &remoteFileName,
                                   ProgressFunction progress) override;

private:
    using Work = std::function<void(ZEKTClientSession *session,
                                    const std::shared_ptr<QPromise<void>> &promise)>;
    QFuture<void> post(Work work);
    QFuture<void> command(const ZEKTRequest &request);

    std::shared_ptr<ZEKTClientCallbacks> m_callbacks;
    ZEKTClientSession *m_session = nullptr; // owned by its I/O thread; reached via the mailbox
    std::shared_ptr<ZEKTMailbox> m_mailbox;
    std::atomic<bool> m_disconnected{false};
};
