#pragma once

#include "state/NavigationItem.h"

#include <QUuid>
#include <QWidget>
#include <optional>

class AppState;
class ComputerListModel;
class QListView;
class QPushButton;
class QToolButton;

// The main window's sidebar: the title, the "Dashboard" row, the "Monitored" computers
// in list order, the "Logs" row and, under a divider, "Add...". Choosing a row (mouse or
// arrow keys, which move across the three parts as across one list) reports the item; the
// computers' context menu and the Delete key ask to edit or delete. It shows the
// selection it is given and changes none by itself.
class ComputerListView : public QWidget {
    Q_OBJECT

public:
    explicit ComputerListView(AppState &appState, QWidget *parent = nullptr);

    void setSelectedItem(const std::optional<NavigationItem> &item);

    QToolButton *dashboardRow() const { return m_dashboardRow; }
    QListView *computerList() const { return m_list; }
    QToolButton *logsRow() const { return m_logsRow; }
    QPushButton *addButton() const { return m_addButton; }
    ComputerListModel *model() const { return m_model; }

Q_SIGNALS:
    void itemChosen(const NavigationItem &item);
    void addRequested();
    void editRequested(const QUuid &id);
    void deleteRequested(const QUuid &id);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void chooseRow(int row);
    void showContextMenu(const QPoint &position);
    void fitListHeight();

    ComputerListModel *m_model;
    QToolButton *m_dashboardRow;
    QListView *m_list;
    QToolButton *m_logsRow;
    QPushButton *m_addButton;
    std::optional<NavigationItem> m_shownItem;
    bool m_isShowingSelection = false;
};
