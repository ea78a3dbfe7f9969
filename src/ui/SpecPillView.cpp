#include "SpecPillView.h"

#include "RoundedBox.h"
#include "SymbolIcon.h"
#include "ToneColors.h"
#include "ViewFonts.h"

#include <QPainter>

namespace {
constexpr int padding = 8;
constexpr int radius = 7;
constexpr int compactPadding = 4;
constexpr int gap = 6;
} // namespace

SpecPillView::SpecPillView(bool compact, QWidget *parent) : QWidget(parent), m_compact(compact)
{
    // The width comes from the grid alone, so a longer value never moves the other pills.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void SpecPillView::setPill(const SpecPill &pill)
{
    if (pill == m_pill)
        return;
    m_pill = pill;
    setAccessibleName(tr("%1: %2").arg(pill.title, pill.value));
    setToolTip(pill.value);
    update();
}

QSize SpecPillView::sizeHint() const
{
    const QFontMetrics caption(ViewFonts::caption(font()));
    const QFontMetrics value(ViewFonts::emphasized(font()));
    const QFontMetrics compactValue(ViewFonts::emphasized(ViewFonts::caption(font())));
    const int height = m_compact ? caption.height() + compactValue.height() + 2 * compactPadding
                                 : caption.height() + value.height() + 2 * padding;
    return {160, height};
}

QSize SpecPillView::minimumSizeHint() const
{
    return {60, sizeHint().height()};
}

void SpecPillView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_compact) // on a card, which is already a box
        RoundedBox::paint(painter, rect(), radius, RoundedBox::faintFill(palette()));
    else
        RoundedBox::paint(painter, rect(), radius, palette().color(QPalette::Base),
                          palette().color(QPalette::Midlight));

    const QColor secondary = ToneColors::color(Tone::secondary, palette());
    const QFont captionFont = ViewFonts::caption(font());
    const QFont valueFont = ViewFonts::emphasized(m_compact ? captionFont : font());
    const QFontMetrics caption(captionFont);
    const QFontMetrics value(valueFont);
    const int inset = padding;
    const int symbolSize =
        std::min(height() - 2 * (m_compact ? compactPadding : padding), m_compact ? 16 : 22);
    SymbolIcon::icon(m_pill.systemImage, secondary)
        .paint(&painter, QRect(inset, (height() - symbolSize) / 2, symbolSize, symbolSize));
    const int textLeft = inset + symbolSize + gap;
    const int textWidth = std::max(0, width() - textLeft - inset);

    painter.setFont(captionFont);
    painter.setPen(secondary);
    const int top = (height() - caption.height() - value.height()) / 2;
    painter.drawText(QRect(textLeft, top, textWidth, caption.height()),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     caption.elidedText(m_pill.title, Qt::ElideRight, textWidth));
    painter.setFont(valueFont);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(textLeft, top + caption.height(), textWidth, value.height()),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     value.elidedText(m_pill.value, Qt::ElideRight, textWidth));
}
