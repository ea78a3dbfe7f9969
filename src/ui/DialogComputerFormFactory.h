#pragma once

#include "ComputerFormFactory.h"
#include "discovery/forms/AddComputerView.h"

#include <chrono>

class AppState;
class BonjourDiscoveryManager;

// Opens the add and edit forms as window-modal dialogs that delete themselves when closed.
class DialogComputerFormFactory : public ComputerFormFactory {
public:
    DialogComputerFormFactory(
        AppState &appState, BonjourDiscoveryManager &discovery,
        std::chrono::milliseconds searchDuration = AddComputerView::defaultSearchDuration);

    void openAddForm(QWidget *parent) override;
    void openEditForm(const QUuid &computerId, QWidget *parent) override;

private:
    AppState &m_appState;
    BonjourDiscoveryManager &m_discovery;
    std::chrono::milliseconds m_searchDuration;
};
