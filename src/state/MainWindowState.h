#pragma once

#include "model/RemoteComputer.h"
#include "state/NavigationItem.h"

#include <QObject>
#include <optional>

class AlertPresenter;
class AppState;

// What the main window shows and asks, without the window: the sidebar's selection kept
// in step with the store's, the record of the selected computer, the appearance sequence
// with its readiness flag, and the delete flow with its confirmation. Main thread only.
class MainWindowState : public QObject {
    Q_OBJECT
    // Set one turn of the event loop after the appearance sequence; what plays the
    // launch animation watches it.
    Q_PROPERTY(bool isAppReady READ isAppReady NOTIFY isAppReadyChanged)

public:
    // `alerts` null: the shared presenter.
    explicit MainWindowState(AppState &appState, AlertPresenter *alerts = nullptr,
                             QObject *parent = nullptr);

    // Takes the store's selection when the window has none and the selected computer's
    // record, queues isAppReady and emits appeared(). Once per window; later calls do
    // nothing.
    void appear();
    bool hasAppeared() const { return m_hasAppeared; }
    bool isAppReady() const { return m_isAppReady; }

    // None until the window appears or something is chosen.
    std::optional<NavigationItem> selectedItem() const { return m_selectedItem; }
    // A selection made in the window; the store's selection follows. A computer that is
    // not in the list selects the dashboard.
    void select(const NavigationItem &item);
    // The selected computer's record, none while something else is selected.
    const std::optional<RemoteComputer> &currentComputer() const { return m_currentComputer; }
    // The selected computer as the detail shows it; the empty record when none.
    const RemoteComputer &currentComputerSnapshot() const { return m_currentSnapshot; }

    // Asks whether to delete that computer; on "Delete" closes its session when it is
    // connected, removes it and leaves the dashboard selected if it was the selected one.
    // A computer that is gone by the answer is left alone. One confirmation at a time.
    void requestDelete(const QUuid &id);
    bool isConfirmingDelete() const { return m_computerToDelete.has_value(); }

Q_SIGNALS:
    void selectedItemChanged();
    void isAppReadyChanged(bool isAppReady);
    // The end of the appearance sequence: supervision asks for a pass when it is on.
    void appeared();

private:
    void setSelection(const NavigationItem &item);
    void followCurrentComputer();
    void computersChanged();

    AppState &m_appState;
    AlertPresenter *m_alerts;
    std::optional<NavigationItem> m_selectedItem;
    std::optional<RemoteComputer> m_currentComputer;
    RemoteComputer m_currentSnapshot;
    std::optional<RemoteComputer> m_computerToDelete;
    bool m_hasAppeared = false;
    bool m_isAppReady = false;
};
