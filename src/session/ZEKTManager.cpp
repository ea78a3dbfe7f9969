#include "ZEKTManager.h"

#include "model/LogManager.h"
#include "protocol/ZEKTClient.h"
#include "state/AppState.h"

// Sessions are not wired into the console yet: every command reports that the
// computer has no session.
ZEKTManager::ZEKTManager(ClientFactory clientFactory, QObject *parent)
    : QObject(parent), m_clientFactory(std::move(clientFactory))
{
}

ZEKTManager::~ZEKTManager()
{
    LogManager::shared().log(QStringLiteral("ZEKTManager deinitialized"), QStringLiteral("MEMORY"));
}

void ZEKTManager::setAppState(AppState *appState)
{
    m_appState = appState;
}

void ZEKTManager::connectToComputer(const RemoteComputer &computer)
{
    if (m_appState)
        m_appState->updateConnectionStatus(computer.id, false,
                                           tr("Sessions are not available in this build"));
}

void ZEKTManager::disconnectFromComputer(const RemoteComputer &) {}
void ZEKTManager::startRemoteControlStreaming(const RemoteComputer &, double) {}
void ZEKTManager::stopRemoteControlStreaming(const RemoteComputer &) {}

std::optional<Error> ZEKTManager::stopRemoteControlStreamingSync(const RemoteComputer &)
{
    return Error{QStringLiteral("ZEKTManager"), -1,
                 QStringLiteral("No active client for computer")};
}

void ZEKTManager::requestManualPreview(const RemoteComputer &) {}

void ZEKTManager::sendFileTransfer(const RemoteComputer &computer, const QString &,
                                   const std::optional<QString> &, bool)
{
    if (m_appState)
        m_appState->completeFileTransfer(tr("Not connected to ") + computer.displayName());
}
