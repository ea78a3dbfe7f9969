#include "ITInventoryDetailSection.h"

#include "InventoryGroupView.h"
#include "ViewFonts.h"

#include <QLabel>
#include <QVBoxLayout>

ITInventoryDetailSection::ITInventoryDetailSection(QWidget *parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(14);
    auto *heading = new QLabel(tr("IT Inventory"), this);
    heading->setFont(ViewFonts::title(font()));
    m_layout->addWidget(heading);
}

void ITInventoryDetailSection::setGroups(const QList<InventoryGroup> &groups)
{
    while (m_groups.size() < groups.size()) {
        auto *view = new InventoryGroupView(this);
        m_layout->addWidget(view);
        m_groups.append(view);
    }
    for (qsizetype i = 0; i < m_groups.size(); ++i) {
        if (i < groups.size())
            m_groups[i]->setGroup(groups[i]);
        m_groups[i]->setVisible(i < groups.size());
    }
}
