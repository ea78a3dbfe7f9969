#pragma once

#include <QWidget>

class LogListModel;
class LogManager;
class QLabel;
class QListView;
class QPushButton;
class QStackedWidget;

// The in-app log, live: header with the entry count and "Logging Active", "Copy All" and
// "Clear Logs", then one row per entry, oldest first, or a large symbol when the log is
// empty. It follows the end while the user is there and keeps its place when they have
// scrolled up.
class LogsView : public QWidget {
    Q_OBJECT

public:
    explicit LogsView(LogManager &logManager, QWidget *parent = nullptr);

    LogListModel *model() const { return m_model; }
    QListView *list() const { return m_list; }
    QLabel *countLabel() const { return m_count; }
    QPushButton *copyAllButton() const { return m_copyAll; }
    QPushButton *clearButton() const { return m_clear; }
    bool isShowingEmptyState() const;

    void copyAll();

private:
    void rowsAboutToChange();
    void rowsInserted();
    void rowsRemoved(int first, int last);
    void updateCount();

    LogManager &m_logManager;
    LogListModel *m_model;
    QLabel *m_count;
    QPushButton *m_copyAll;
    QPushButton *m_clear;
    QStackedWidget *m_pages;
    QListView *m_list;
    bool m_wasAtEnd = true;
    int m_scrollBeforeChange = 0;
};
