#include "TechnicalSpecGrid.h"

#include "SpecPillView.h"
#include "presentation/TechnicalSpecPills.h"

#include <QGridLayout>

TechnicalSpecGrid::TechnicalSpecGrid(bool compact, QWidget *parent) : QWidget(parent)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(compact ? 6 : 10);
    grid->setVerticalSpacing(compact ? 4 : 8);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    // Pills fill the cells in order, so the visible ones never leave a gap.
    const int count = int(TechnicalSpecPills::definitions().size());
    for (int i = 0; i < count; ++i) {
        auto *view = new SpecPillView(compact, this);
        view->hide();
        grid->addWidget(view, i / 2, i % 2);
        m_views.append(view);
    }
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TechnicalSpecGrid::setPills(const QList<SpecPill> &pills)
{
    if (pills == m_pills)
        return;
    m_pills = pills;
    for (qsizetype i = 0; i < m_views.size(); ++i) {
        SpecPillView *view = m_views[i];
        if (i < pills.size())
            view->setPill(pills[i]);
        view->setVisible(i < pills.size());
    }
}
