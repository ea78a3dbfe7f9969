#pragma once

#include <QMainWindow>
#include <QUuid>
#include <optional>

class AppState;
class ComputerTableModel;
class QAction;
class QTableView;

// The console's main window: the list of configured computers with their status, and
// actions on the selected one. The dashboard and detail views arrive later.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(AppState &appState, QWidget *parent = nullptr);

private:
    std::optional<QUuid> selectedComputerId() const;
    void updateActions();
    void connectSelected();
    void disconnectSelected();
    void previewSelected();

    AppState &m_appState;
    ComputerTableModel *m_model;
    QTableView *m_table;
    QAction *m_connectAction;
    QAction *m_disconnectAction;
    QAction *m_previewAction;
};
