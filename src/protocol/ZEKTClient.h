#pragma once

#include "NetworkState.h"
#include "ZEKT.h"
#include "ZEKTError.h"
#include "ZEKTMessage.h"

#include <QFuture>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

// One session with an agent. Asynchronous operations return a QFuture<void> that
// finishes on the library's I/O thread; a failure is a ZEKTError set on the future
// (catch it with onFailed). The console continues on its main thread with
// future.then(context, ...) / onFailed(context, ...), never by waiting.
//
// Handlers are installed before connect() and called on the library's I/O thread.
// After disconnect() the client calls no handler at all.
class ZEKTClient {
public:
    using StateUpdateHandler = std::function<void(const NetworkState &state)>;
    using MessageHandler = std::function<void(const ZEKTMessagePtr &message)>;
    using LogFunction = std::function<void(const QString &message, const QString &category)>;
    // Called on a thread of this session when the agent's identity fingerprint differs
    // from the trusted one; true trusts the new identity, false rejects it.
    using IdentityMismatchHandler =
        std::function<bool(const QString &previousFingerprint, const QString &newFingerprint)>;
    using ProgressFunction = std::function<void(double fraction)>;

    virtual ~ZEKTClient() = default;

    // Creates an unconnected client for the real wire protocol. Throws ZEKTError with a
    // readable description when the endpoint is unusable (an empty host, say).
    static std::shared_ptr<ZEKTClient> create(const QString &host, quint16 port);

    virtual QFuture<void> connect() = 0;
    virtual QFuture<void> authenticate(const QString &username, const QString &password) = 0;
    // Safe at any time, from any thread; never throws.
    virtual void disconnect() noexcept = 0;
    virtual ZEKT::ConnectionState connectionState() const = 0;

    virtual void setStateUpdateHandler(StateUpdateHandler handler) = 0;
    virtual void setMessageHandler(MessageHandler handler) = 0;
    virtual void setLogFunction(LogFunction function) = 0;
    virtual void setOnServerIdentityMismatch(IdentityMismatchHandler handler) = 0;

    virtual QFuture<void> requestScreenCapture(quint32 displayID) = 0;
    virtual QFuture<void> startContinuousStreaming(quint32 displayID, float quality,
                                                   double frameRate) = 0;
    virtual QFuture<void> stopContinuousStreaming() = 0;
    virtual QFuture<void> sendMouseEvent(double x, double y, int button, bool pressed) = 0;
    virtual QFuture<void> sendMouseMoveEvent(double x, double y, double deltaX, double deltaY) = 0;
    virtual QFuture<void> sendKeyboardEvent(quint16 keyCode, bool pressed, quint32 modifiers) = 0;
    // Completes when the last byte is sent; the agent's verdict arrives later as a
    // FileTransferResponseMessage.
    virtual QFuture<void> sendFileTransfer(const QString &filePath,
                                           const std::optional<QString> &remoteFileName,
                                           ProgressFunction progress) = 0;
};
