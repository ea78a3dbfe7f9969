#pragma once

#include <QMainWindow>

class AppState;
class ComputerTableModel;
class QTableView;

// The console's main window: for now the list of configured computers with their
// status; the session controls arrive with the dashboard and detail views.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(AppState &appState, QWidget *parent = nullptr);

private:
    AppState &m_appState;
    ComputerTableModel *m_model;
    QTableView *m_table;
};
