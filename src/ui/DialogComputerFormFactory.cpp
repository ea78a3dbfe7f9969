#include "DialogComputerFormFactory.h"

#include "AddComputerDialog.h"
#include "EditComputerDialog.h"
#include "discovery/forms/EditComputerView.h"
#include "state/AppState.h"

DialogComputerFormFactory::DialogComputerFormFactory(AppState &appState,
                                                     BonjourDiscoveryManager &discovery,
                                                     std::chrono::milliseconds searchDuration)
    : m_appState(appState), m_discovery(discovery), m_searchDuration(searchDuration)
{
}

void DialogComputerFormFactory::openAddForm(QWidget *parent)
{
    auto *dialog = new AddComputerDialog(
        new AddComputerView(m_appState, m_discovery, m_searchDuration), parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void DialogComputerFormFactory::openEditForm(const QUuid &computerId, QWidget *parent)
{
    const std::optional<RemoteComputer> computer = m_appState.computer(computerId);
    if (!computer)
        return;
    auto *dialog = new EditComputerDialog(new EditComputerView(m_appState, *computer), parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}
