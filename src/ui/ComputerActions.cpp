#include "ComputerActions.h"

#include "state/AppState.h"

ComputerActions::ComputerActions(AppState &appState) : m_appState(appState) {}

void ComputerActions::connectComputer(const QUuid &id)
{
    if (const auto computer = m_appState.computer(id))
        m_appState.zektManager().connectToComputer(*computer);
}

void ComputerActions::disconnectComputer(const QUuid &id)
{
    if (const auto computer = m_appState.computer(id))
        m_appState.zektManager().disconnectFromComputer(*computer);
}

void ComputerActions::requestPreview(const QUuid &id)
{
    if (const auto computer = m_appState.computer(id))
        m_appState.zektManager().requestManualPreview(*computer);
}

void ComputerActions::sendFile(const QUuid &id, const QString &filePath)
{
    if (const auto computer = m_appState.computer(id))
        m_appState.zektManager().sendFileTransfer(*computer, filePath, std::nullopt, false);
}

void ComputerActions::cancelFileTransfer()
{
    m_appState.cancelFileTransfer();
}

void ComputerActions::removeComputer(const QUuid &id)
{
    const auto computer = m_appState.computer(id);
    if (!computer)
        return;
    if (computer->isConnected)
        m_appState.zektManager().disconnectFromComputer(*computer);
    m_appState.removeComputer(id);
}
