#include "MainWindowState.h"

#include "AppState.h"
#include "platform/AlertPresenter.h"

#include <QPointer>

MainWindowState::MainWindowState(AppState &appState, AlertPresenter *alerts, QObject *parent)
    : QObject(parent), m_appState(appState), m_alerts(alerts ? alerts : AlertPresenter::shared())
{
    connect(&appState, &AppState::selectedItemChanged, this, [this] {
        // Before the window appears it takes the store's selection then, not now.
        if (m_hasAppeared)
            setSelection(m_appState.selectedItem());
    });
    connect(&appState, &AppState::computersChanged, this, &MainWindowState::computersChanged);
}

void MainWindowState::appear()
{
    if (std::exchange(m_hasAppeared, true))
        return;
    if (!m_selectedItem)
        m_selectedItem = m_appState.selectedItem();
    followCurrentComputer();
    Q_EMIT selectedItemChanged();
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isAppReady = true;
            Q_EMIT isAppReadyChanged(true);
        },
        Qt::QueuedConnection);
    Q_EMIT appeared();
}

void MainWindowState::select(const NavigationItem &item)
{
    if (item.kind == NavigationItem::Kind::computer && !m_appState.computer(item.computerId))
        setSelection(NavigationItem::dashboard());
    else
        setSelection(item);
}

void MainWindowState::setSelection(const NavigationItem &item)
{
    if (m_selectedItem == item)
        return;
    m_selectedItem = item;
    followCurrentComputer();
    if (m_appState.selectedItem() != item)
        m_appState.setSelectedItem(item);
    Q_EMIT selectedItemChanged();
}

void MainWindowState::followCurrentComputer()
{
    m_currentComputer.reset();
    if (m_selectedItem && m_selectedItem->kind == NavigationItem::Kind::computer)
        m_currentComputer = m_appState.computer(m_selectedItem->computerId);
    m_currentSnapshot = m_currentComputer.value_or(RemoteComputer());
}

void MainWindowState::computersChanged()
{
    if (!m_selectedItem || m_selectedItem->kind != NavigationItem::Kind::computer)
        return;
    if (m_appState.computer(m_selectedItem->computerId))
        followCurrentComputer();
    else
        setSelection(NavigationItem::dashboard());
}

void MainWindowState::requestDelete(const QUuid &id)
{
    const std::optional<RemoteComputer> computer = m_appState.computer(id);
    if (!computer || isConfirmingDelete() || !m_alerts)
        return;
    m_computerToDelete = computer;
    Alert alert;
    alert.style = Alert::Style::warning;
    alert.title = tr("Delete Computer");
    alert.text = tr("Are you sure you want to delete '%1'? This action cannot be undone.")
                     .arg(computer->displayName());
    alert.buttons = QStringList{tr("Delete"), tr("Cancel")};
    alert.destructiveButton = 0;
    alert.cancelButton = 1;
    const QPointer<MainWindowState> self(this);
    m_alerts->show(alert, [self, id](int button) {
        if (!self)
            return;
        self->m_computerToDelete.reset();
        // Gone meanwhile (removed elsewhere): there is nothing left to delete.
        const std::optional<RemoteComputer> current = self->m_appState.computer(id);
        if (button != 0 || !current)
            return;
        const bool wasSelected = self->m_selectedItem == NavigationItem::computer(id);
        if (current->isConnected)
            self->m_appState.zektManager().disconnectFromComputer(*current);
        self->m_appState.removeComputer(id);
        if (wasSelected)
            self->setSelection(NavigationItem::dashboard());
    });
}
