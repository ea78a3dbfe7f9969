#include "InventoryGroupView.h"

#include "ToneColors.h"
#include "ViewFonts.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

InventoryGroupView::InventoryGroupView(QWidget *parent)
    : QWidget(parent), m_title(new QLabel(this)), m_rows(new QGridLayout)
{
    m_title->setFont(ViewFonts::emphasized(font()));
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setHorizontalSpacing(16);
    m_rows->setVerticalSpacing(4);
    m_rows->setColumnStretch(1, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_title);
    layout->addLayout(m_rows);
}

void InventoryGroupView::setGroup(const InventoryGroup &group)
{
    if (group == m_group)
        return;
    m_group = group;
    m_title->setText(group.title);
    while (m_rowLabels.size() < group.rows.size()) {
        auto *label = new QLabel(this);
        auto *value = new QLabel(this);
        ToneColors::applyTo(label, Tone::secondary);
        // Values from agents are shown as they are, never as markup.
        for (QLabel *text : {label, value})
            text->setTextFormat(Qt::PlainText);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setWordWrap(true);
        const int row = int(m_rowLabels.size());
        m_rows->addWidget(label, row, 0, Qt::AlignTop);
        m_rows->addWidget(value, row, 1);
        m_rowLabels.append(std::pair(label, value));
    }
    for (qsizetype i = 0; i < m_rowLabels.size(); ++i) {
        const auto [label, value] = m_rowLabels[i];
        const bool shown = i < group.rows.size();
        if (shown) {
            label->setText(group.rows[i].label);
            value->setText(group.rows[i].value);
        }
        label->setVisible(shown);
        value->setVisible(shown);
    }
}
