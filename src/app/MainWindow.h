#pragma once

#include "ui/ComputerActions.h"

#include <QMainWindow>
#include <QPointer>
#include <QUuid>

class AlertPresenter;
class AppState;
class ComputerDetailView;
class ComputerFormFactory;
class ComputerListView;
class DashboardView;
class LogsView;
class MainWindowState;
class QStackedWidget;
class RemoteControlWindowFactory;
class SettingsView;

// The console's main window: the sidebar on the left (exactly 300 wide), and on the right
// the dashboard, the selected computer's detail or the log. The selection is the store's,
// through MainWindowState. Adding, editing and deleting computers start here; the File
// menu opens the settings window and quits, the Help menu the maker's pages, About and the
// assistant. The launch ripple plays once the app is ready. Geometry is kept across restarts.
class HelpMenu;
class LaunchAnimationPresenter;

class MainWindow : public QMainWindow {
    Q_OBJECT
    // True one turn of the event loop after the appearance sequence.
    Q_PROPERTY(bool isAppReady READ isAppReady NOTIFY isAppReadyChanged)

public:
    static constexpr int sidebarWidth = 300;

    // `alerts` null: the shared presenter.
    explicit MainWindow(AppState &appState, QWidget *parent = nullptr,
                        ComputerFormFactory *formFactory = nullptr,
                        RemoteControlWindowFactory *remoteControlFactory = nullptr,
                        AlertPresenter *alerts = nullptr);
    ~MainWindow() override;

    // The appearance sequence (once): takes the store's selection, shows it and queues
    // isAppReady.
    void appear();
    bool isAppReady() const;

    MainWindowState *state() const { return m_state; }
    ComputerListView *sidebar() const { return m_sidebar; }
    DashboardView *dashboard() const { return m_dashboard; }
    // Null while no computer is selected.
    ComputerDetailView *detail() const { return m_detail; }
    LogsView *logs() const { return m_logs; }
    // The Help menu's seams (About, assistant) are set by whoever owns those windows.
    HelpMenu *helpMenu() const { return m_helpMenu; }
    LaunchAnimationPresenter *launchAnimation() const { return m_launchAnimation; }
    // Null until first opened.
    SettingsView *settingsWindow() const;
    QWidget *currentPage() const;

    void showSettings();
    void openAddForm();
    void openEditForm(const QUuid &id);

Q_SIGNALS:
    void isAppReadyChanged(bool isAppReady);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void showSelection();
    void showComputer(const QUuid &id);
    void restorePlacement();
    void savePlacement() const;

    AppState &m_appState;
    ComputerActions m_actions;
    ComputerFormFactory *m_formFactory;
    RemoteControlWindowFactory *m_remoteControlFactory;
    MainWindowState *m_state;
    ComputerListView *m_sidebar;
    QStackedWidget *m_pages;
    DashboardView *m_dashboard;
    LogsView *m_logs;
    ComputerDetailView *m_detail = nullptr;
    QPointer<SettingsView> m_settings;
    HelpMenu *m_helpMenu;
    LaunchAnimationPresenter *m_launchAnimation;
};
