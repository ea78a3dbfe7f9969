#include "DashboardSummaryStrip.h"

#include "SummaryTileView.h"

#include <QHBoxLayout>

DashboardSummaryStrip::DashboardSummaryStrip(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    const QList<SummaryTile> tiles = m_summary.tiles();
    for (const SummaryTile &tile : tiles) {
        auto *view = new SummaryTileView(this);
        view->setTile(tile);
        layout->addWidget(view);
        m_tiles.append(view);
    }
}

void DashboardSummaryStrip::setSummary(const DashboardSummary &summary)
{
    if (summary == m_summary)
        return;
    m_summary = summary;
    const QList<SummaryTile> tiles = summary.tiles();
    for (qsizetype i = 0; i < tiles.size() && i < m_tiles.size(); ++i)
        m_tiles[i]->setTile(tiles[i]);
}
