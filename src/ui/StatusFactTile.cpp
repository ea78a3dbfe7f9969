#include "StatusFactTile.h"

#include "ElidedLabel.h"
#include "RoundedBox.h"
#include "ToneColors.h"
#include "ViewFonts.h"

#include <QPainter>
#include <QVBoxLayout>

StatusFactTile::StatusFactTile(QWidget *parent)
    : QWidget(parent), m_title(new ElidedLabel(this)), m_value(new ElidedLabel(this))
{
    m_title->setFont(ViewFonts::caption(font()));
    m_title->setColor(ToneColors::color(Tone::secondary, palette()));
    m_value->setFont(ViewFonts::title(font()));
    for (ElidedLabel *label : {m_title, m_value})
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 8);
    layout->setSpacing(2);
    layout->addWidget(m_title);
    layout->addWidget(m_value);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StatusFactTile::setFact(const FactTile &fact)
{
    m_title->setText(fact.title);
    m_value->setText(fact.value);
    setAccessibleName(tr("%1: %2").arg(fact.title, fact.value));
}

void StatusFactTile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    RoundedBox::paint(painter, rect(), 8, palette().color(QPalette::Base),
                      palette().color(QPalette::Midlight));
}
