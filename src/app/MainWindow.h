#pragma once

#include "ui/ComputerActions.h"

#include <QMainWindow>
#include <QUuid>

class AppState;
class ComputerDetailView;
class ComputerFormFactory;
class DashboardView;
class QAction;
class QStackedWidget;
class RemoteControlWindowFactory;

// The console's interim main window: the dashboard, and the detail of a computer chosen
// on it, with a way back. Actions asked for in the views go to the store and the session
// manager through ComputerActions.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(AppState &appState, QWidget *parent = nullptr,
                        ComputerFormFactory *formFactory = nullptr,
                        RemoteControlWindowFactory *remoteControlFactory = nullptr);

    DashboardView *dashboard() const { return m_dashboard; }
    // Null while the dashboard shows.
    ComputerDetailView *detail() const { return m_detail; }

    void showDashboard();
    void showComputer(const QUuid &id);

private:
    AppState &m_appState;
    ComputerActions m_actions;
    ComputerFormFactory *m_formFactory;
    RemoteControlWindowFactory *m_remoteControlFactory;
    QStackedWidget *m_pages;
    DashboardView *m_dashboard;
    ComputerDetailView *m_detail = nullptr;
    QAction *m_dashboardAction;
};
