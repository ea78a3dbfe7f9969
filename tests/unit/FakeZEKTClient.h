#pragma once

#include "protocol/ZEKTClient.h"

#include <QList>
#include <QPromise>
#include <QSet>
#include <QVariantList>

// A scripted session client: every asynchronous call is recorded with a promise that the
// test completes (or that completes at once, for operations listed in `autoSucceed`);
// state updates, messages and identity questions are sent by the test.
class FakeZEKTClient : public ZEKTClient {
public:
    struct Call {
        QString operation;
        QVariantList arguments;
        std::shared_ptr<QPromise<void>> promise;
        ProgressFunction progress;
    };

    FakeZEKTClient(QString host, quint16 port) : host(std::move(host)), port(port) {}

    // Completes the oldest unfinished call of `operation`; false when there is none.
    bool complete(const QString &operation, const std::optional<QString> &error = std::nullopt);
    // Arguments of the newest call of `operation` (empty when never called).
    QVariantList lastArguments(const QString &operation) const;
    int callCount(const QString &operation) const;

    void sendState(const NetworkState &state) { stateHandler(state); }
    void sendMessage(ZEKTMessagePtr message) { messageHandler(message); }
    bool askIdentity(const QString &previous, const QString &next)
    {
        return identityHandler(previous, next);
    }

    QFuture<void> connect() override { return record(QStringLiteral("connect"), {}); }
    QFuture<void> authenticate(const QString &username, const QString &password) override
    {
        return record(QStringLiteral("authenticate"), {username, password});
    }
    void disconnect() noexcept override { ++disconnectCount; }
    ZEKT::ConnectionState connectionState() const override { return state; }
    void setStateUpdateHandler(StateUpdateHandler handler) override { stateHandler = handler; }
    void setMessageHandler(MessageHandler handler) override { messageHandler = handler; }
    void setLogFunction(LogFunction function) override { logFunction = function; }
    void setOnServerIdentityMismatch(IdentityMismatchHandler handler) override
    {
        identityHandler = handler;
    }
    QFuture<void> requestScreenCapture(quint32 displayID) override
    {
        return record(QStringLiteral("requestScreenCapture"), {displayID});
    }
    QFuture<void> startContinuousStreaming(quint32 displayID, float quality,
                                           double frameRate) override
    {
        return record(QStringLiteral("startContinuousStreaming"), {displayID, quality, frameRate});
    }
    QFuture<void> stopContinuousStreaming() override
    {
        return record(QStringLiteral("stopContinuousStreaming"), {});
    }
    QFuture<void> sendMouseEvent(double x, double y, int button, bool pressed) override
    {
        return record(QStringLiteral("sendMouseEvent"), {x, y, button, pressed});
    }
    QFuture<void> sendMouseMoveEvent(double x, double y, double dx, double dy) override
    {
        return record(QStringLiteral("sendMouseMoveEvent"), {x, y, dx, dy});
    }
    QFuture<void> sendKeyboardEvent(quint16 keyCode, bool pressed, quint32 modifiers) override
    {
        return record(QStringLiteral("sendKeyboardEvent"), {keyCode, pressed, modifiers});
    }
    QFuture<void> sendFileTransfer(const QString &filePath,
                                   const std::optional<QString> &remoteFileName,
                                   ProgressFunction progress) override
    {
        return record(QStringLiteral("sendFileTransfer"),
                      {filePath, remoteFileName.value_or(QString())}, progress);
    }

    QString host;
    quint16 port;
    ZEKT::ConnectionState state = ZEKT::ConnectionState::disconnected;
    QSet<QString> autoSucceed;
    QList<Call> calls;
    int disconnectCount = 0;
    StateUpdateHandler stateHandler;
    MessageHandler messageHandler;
    LogFunction logFunction;
    IdentityMismatchHandler identityHandler;

private:
    QFuture<void> record(const QString &operation, QVariantList arguments,
                         ProgressFunction progress = {});
};
