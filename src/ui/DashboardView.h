#pragma once

#include "presentation/ComputerCardContent.h"

#include <QList>
#include <QUuid>
#include <QWidget>

class AppState;
class ComputerCardView;
class ComputerListModel;
class DashboardSummaryStrip;
class QAction;
class QGridLayout;
class QScrollArea;
class QStackedWidget;

// The fleet at a glance: a header with the "Display Options" menu, then either the empty
// state or the summary strip and one card per computer in list order. It follows the
// computer list model row by row: a computer added or removed adds or removes its card,
// a change updates that computer's card alone, and the strip repaints only when a count
// changes. It follows the display preferences at once.
class DashboardView : public QWidget {
    Q_OBJECT

public:
    explicit DashboardView(AppState &appState, QWidget *parent = nullptr);

    const QList<ComputerCardView *> &cards() const { return m_cards; }
    DashboardSummaryStrip *summaryStrip() const { return m_strip; }
    // The four switches, in menu order.
    QList<QAction *> displayOptions() const { return m_options; }
    bool isShowingEmptyState() const;

Q_SIGNALS:
    void computerSelected(const QUuid &id);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void insertCards(int first, int last);
    void removeCards(int first, int last);
    void rebuildCards();
    void updateCard(int row);
    void updateAllCards();
    void updateSummary();
    void updateEmptyState();
    void preferenceChanged(const QString &key);
    void placeCards();
    int columnCount() const;

    AppState &m_appState;
    ComputerListModel *m_model;
    ComputerCardContent::Switches m_switches;
    QStackedWidget *m_pages;
    QWidget *m_emptyPage;
    QScrollArea *m_scroll;
    DashboardSummaryStrip *m_strip;
    QGridLayout *m_grid;
    QList<ComputerCardView *> m_cards;
    QList<QAction *> m_options;
    int m_placedColumns = 0;
};
