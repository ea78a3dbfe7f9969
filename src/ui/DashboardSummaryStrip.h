#pragma once

#include "presentation/DashboardSummary.h"

#include <QWidget>

class SummaryTileView;

// The four counters over the whole list. A tile repaints only when its count changes.
class DashboardSummaryStrip : public QWidget {
    Q_OBJECT

public:
    explicit DashboardSummaryStrip(QWidget *parent = nullptr);

    void setSummary(const DashboardSummary &summary);
    const DashboardSummary &summary() const { return m_summary; }

private:
    DashboardSummary m_summary;
    QList<SummaryTileView *> m_tiles;
};
