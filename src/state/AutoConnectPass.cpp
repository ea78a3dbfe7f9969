#include "AutoConnectPass.h"

#include "model/LogManager.h"
#include "session/SessionStore.h"
#include "session/ZEKTManager.h"

AutoConnectPass::AutoConnectPass(const SessionStore &store, ZEKTManager &manager)
    : m_store(store), m_manager(manager)
{
}

bool AutoConnectPass::shouldAutoConnect(const RemoteComputer &computer, const QDateTime &now,
                                        double minimumRetryInterval) const
{
    if (computer.isConnected || computer.isConnecting)
        return false;
    const auto last = m_lastAutoConnectAttempts.constFind(computer.id);
    return last == m_lastAutoConnectAttempts.constEnd() ||
           double(last->msecsTo(now)) / 1000.0 >= minimumRetryInterval;
}

void AutoConnectPass::run(const QDateTime &passTime, double minimumRetryInterval)
{
    QList<RemoteComputer> selected;
    for (const RemoteComputer &computer : m_store.computers()) {
        if (shouldAutoConnect(computer, passTime, minimumRetryInterval))
            selected.append(computer);
    }
    if (selected.isEmpty())
        return;
    LogManager::shared().log(
        QStringLiteral("Supervision: connecting to %1 disconnected computer(s)")
            .arg(selected.size()),
        QStringLiteral("CONNECT"));
    for (const RemoteComputer &computer : selected) {
        m_lastAutoConnectAttempts.insert(computer.id, passTime);
        m_manager.connectToComputer(computer);
    }
}
