#include "ZEKTClientCallbacks.h"

void ZEKTClientCallbacks::setStateUpdateHandler(ZEKTClient::StateUpdateHandler handler)
{
    QMutexLocker locker(&m_lock);
    if (!m_closed)
        m_stateHandler = std::move(handler);
}

void ZEKTClientCallbacks::setMessageHandler(ZEKTClient::MessageHandler handler)
{
    QMutexLocker locker(&m_lock);
    if (!m_closed)
        m_messageHandler = std::move(handler);
}

void ZEKTClientCallbacks::setLogFunction(ZEKTClient::LogFunction function)
{
    QMutexLocker locker(&m_lock);
    if (!m_closed)
        m_logFunction = std::move(function);
}

void ZEKTClientCallbacks::setIdentityMismatchHandler(ZEKTClient::IdentityMismatchHandler handler)
{
    QMutexLocker locker(&m_lock);
    if (!m_closed)
        m_identityHandler = std::move(handler);
}

void ZEKTClientCallbacks::close()
{
    ZEKTClient::StateUpdateHandler state;
    ZEKTClient::MessageHandler message;
    ZEKTClient::LogFunction log;
    ZEKTClient::IdentityMismatchHandler identity;
    {
        QMutexLocker locker(&m_lock);
        m_closed = true;
        // Destroyed outside the lock: a handler's captures may do anything on release.
        state.swap(m_stateHandler);
        message.swap(m_messageHandler);
        log.swap(m_logFunction);
        identity.swap(m_identityHandler);
    }
    m_state.store(ZEKT::ConnectionState::closed);
}

void ZEKTClientCallbacks::stateUpdate(const NetworkState &state)
{
    ZEKTClient::StateUpdateHandler handler;
    {
        QMutexLocker locker(&m_lock);
        handler = m_stateHandler;
    }
    if (handler && !m_closed)
        handler(state);
}

void ZEKTClientCallbacks::message(const ZEKTMessagePtr &message)
{
    ZEKTClient::MessageHandler handler;
    {
        QMutexLocker locker(&m_lock);
        handler = m_messageHandler;
    }
    if (handler && !m_closed)
        handler(message);
}

void ZEKTClientCallbacks::log(const QString &text, const QString &category)
{
    ZEKTClient::LogFunction function;
    {
        QMutexLocker locker(&m_lock);
        function = m_logFunction;
    }
    if (function && !m_closed)
        function(text, category);
}

ZEKTClient::IdentityMismatchHandler ZEKTClientCallbacks::identityMismatchHandler() const
{
    QMutexLocker locker(&m_lock);
    return m_identityHandler;
}
