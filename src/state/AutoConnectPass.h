#pragma once

#include "model/RemoteComputer.h"

#include <QDateTime>
#include <QHash>
#include <QUuid>

class SessionStore;
class ZEKTManager;

// One supervision pass: connects, in list order, every computer that is neither connected
// nor connecting and was not tried within the retry interval. It keeps no timer; whoever
// asks for passes does.
class AutoConnectPass {
public:
    AutoConnectPass(const SessionStore &store, ZEKTManager &manager);

    // Intervals are in seconds.
    bool shouldAutoConnect(const RemoteComputer &computer, const QDateTime &now,
                           double minimumRetryInterval) const;
    // Runs one pass, every attempt stamped with `passTime`.
    void run(const QDateTime &passTime, double minimumRetryInterval);

    const QHash<QUuid, QDateTime> &lastAutoConnectAttempts() const
    {
        return m_lastAutoConnectAttempts;
    }

private:
    const SessionStore &m_store;
    ZEKTManager &m_manager;
    QHash<QUuid, QDateTime> m_lastAutoConnectAttempts;
};
