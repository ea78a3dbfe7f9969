#include "SummaryTileView.h"

#include "RoundedBox.h"
#include "SymbolIcon.h"
#include "ToneColors.h"
#include "ViewFonts.h"

#include <QPainter>

namespace {
constexpr int padding = 12;
constexpr int symbolSize = 22;
constexpr int radius = 10;
} // namespace

SummaryTileView::SummaryTileView(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SummaryTileView::setTile(const SummaryTile &tile)
{
    if (tile == m_tile)
        return;
    m_tile = tile;
    setAccessibleName(tr("%1: %2").arg(tile.title, tile.value));
    update();
}

QSize SummaryTileView::sizeHint() const
{
    const QFontMetrics value(ViewFonts::pageTitle(font()));
    const QFontMetrics caption(ViewFonts::caption(font()));
    return {160, 2 * padding + std::max(value.height(), symbolSize) + 2 + caption.height()};
}

QSize SummaryTileView::minimumSizeHint() const
{
    return {110, sizeHint().height()};
}

void SummaryTileView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    RoundedBox::paint(painter, rect(), radius, palette().color(QPalette::Base),
                      palette().color(QPalette::Mid));
    painter.setRenderHint(QPainter::Antialiasing);

    const QColor color = ToneColors::color(m_tile.color, palette());
    const QFont valueFont = ViewFonts::pageTitle(font());
    const QFontMetrics value(valueFont);
    const int rowHeight = std::max(value.height(), symbolSize);
    SymbolIcon::icon(m_tile.systemImage, color)
        .paint(&painter,
               QRect(padding, padding + (rowHeight - symbolSize) / 2, symbolSize, symbolSize));
    painter.setFont(valueFont);
    painter.setPen(color);
    painter.drawText(QRect(padding + symbolSize + 8, padding, width(), rowHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, m_tile.value);

    const QFont captionFont = ViewFonts::caption(font());
    painter.setFont(captionFont);
    painter.setPen(ToneColors::color(Tone::secondary, palette()));
    const QFontMetrics caption(captionFont);
    const QRect titleRect(padding, padding + rowHeight + 2, width() - 2 * padding,
                          caption.height());
    painter.drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter,
                     caption.elidedText(m_tile.title, Qt::ElideRight, titleRect.width()));
}
