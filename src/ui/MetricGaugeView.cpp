#include "MetricGaugeView.h"

#include "SymbolIcon.h"
#include "ToneColors.h"
#include "ViewFonts.h"

#include <QPainter>

namespace {
constexpr int ringDiameter = 58;
constexpr int ringWidth = 6;
constexpr int symbolSize = 14;
constexpr int gap = 4;
} // namespace

MetricGaugeView::MetricGaugeView(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // Start as a gauge that differs from any real one, so the first setGauge draws.
    m_gauge.value = -1;
}

void MetricGaugeView::setGauge(const MetricGauge &gauge)
{
    if (gauge == m_gauge)
        return;
    m_gauge = gauge;
    setAccessibleName(gauge.accessibleText());
    update();
}

QSize MetricGaugeView::sizeHint() const
{
    const QFontMetrics caption(ViewFonts::caption(font()));
    return {ringDiameter + 24, ringDiameter + gap + std::max(caption.height(), symbolSize) + 2};
}

void MetricGaugeView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = ToneColors::color(m_gauge.tone(), palette());
    const QRectF ring((width() - ringDiameter) / 2.0 + ringWidth / 2.0, ringWidth / 2.0,
                      ringDiameter - ringWidth, ringDiameter - ringWidth);

    QColor track = palette().color(QPalette::WindowText);
    track.setAlphaF(0.1);
    painter.setPen(QPen(track, ringWidth));
    painter.drawEllipse(ring);
    if (const int span = qRound(m_gauge.fill() * 360 * 16); span > 0) {
        painter.setPen(QPen(color, ringWidth, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, 90 * 16, -span); // clockwise from the top
    }

    QFont label = font();
    label.setPixelSize(15);
    label.setBold(true);
    painter.setFont(label);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(ring, Qt::AlignCenter, m_gauge.label());

    const QFont caption = ViewFonts::caption(font());
    painter.setFont(caption);
    const QFontMetrics metrics(caption);
    const int rowTop = ringDiameter + gap;
    const int rowWidth = symbolSize + gap + metrics.horizontalAdvance(m_gauge.title);
    const int left = std::max(0, (width() - rowWidth) / 2);
    const QColor secondary = ToneColors::color(Tone::secondary, palette());
    SymbolIcon::icon(m_gauge.systemImage, secondary)
        .paint(&painter,
               QRect(left, rowTop + (metrics.height() - symbolSize) / 2, symbolSize, symbolSize));
    painter.setPen(secondary);
    painter.drawText(QRect(left + symbolSize + gap, rowTop, width(), metrics.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, m_gauge.title);
}
