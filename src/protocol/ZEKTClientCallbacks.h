#pragma once

#include "ZEKTClient.h"

#include <QMutex>
#include <atomic>

// What a client shares between the console's threads and its I/O thread: the handlers,
// the session state and the closed flag. close() drops every handler, so nothing reaches
// the console after disconnect() (a call already running on the I/O thread may finish).
class ZEKTClientCallbacks {
public:
    void setStateUpdateHandler(ZEKTClient::StateUpdateHandler handler);
    void setMessageHandler(ZEKTClient::MessageHandler handler);
    void setLogFunction(ZEKTClient::LogFunction function);
    void setIdentityMismatchHandler(ZEKTClient::IdentityMismatchHandler handler);

    void close();
    bool isClosed() const { return m_closed.load(); }

    void stateUpdate(const NetworkState &state);
    void message(const ZEKTMessagePtr &message);
    void log(const QString &text, const QString &category);
    ZEKTClient::IdentityMismatchHandler identityMismatchHandler() const;

    ZEKT::ConnectionState state() const { return m_state.load(); }
    void setState(ZEKT::ConnectionState state) { m_state.store(state); }

private:
    mutable QMutex m_lock;
    ZEKTClient::StateUpdateHandler m_stateHandler;
    ZEKTClient::MessageHandler m_messageHandler;
    ZEKTClient::LogFunction m_logFunction;
    ZEKTClient::IdentityMismatchHandler m_identityHandler;
    std::atomic<bool> m_closed{false};
    std::atomic<ZEKT::ConnectionState> m_state{ZEKT::ConnectionState::disconnected};
};
