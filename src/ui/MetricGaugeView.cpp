#include "MetricGaugeView.h"

#include "SymbolIcon.h"
#include "ToneColors.h"
#include "ViewFonts.h"

#include <QEvent>
#include <QHash>
#include <QPainter>
#include <QStaticText>

namespace {

constexpr int ringDiameter = 58;
constexpr int ringWidth = 6;
constexpr int symbolSize = 14;
constexpr int gap = 4;

QFont labelFont(const QFont &base)
{
    QFont font = base;
    font.setPixelSize(15);
    font.setBold(true);
    return font;
}

QRectF ringRect(int width)
{
    return {(width - ringDiameter) / 2.0 + ringWidth / 2.0, ringWidth / 2.0,
            double(ringDiameter - ringWidth), double(ringDiameter - ringWidth)};
}

// Percent labels laid out once: there are only 101 of them. Main thread only.
const QStaticText &staticLabel(const QString &text, const QFont &font)
{
    static QHash<QString, QStaticText> cache;
    const QString key = font.key() + QLatin1Char('\n') + text;
    auto it = cache.find(key);
    if (it == cache.end()) {
        if (cache.size() > 512)
            cache.clear();
        QStaticText label(text);
        label.setTextFormat(Qt::PlainText);
        label.setPerformanceHint(QStaticText::AggressiveCaching);
        label.prepare(QTransform(), font);
        it = cache.insert(key, label);
    }
    return *it;
}

} // namespace

MetricGaugeView::MetricGaugeView(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // Opaque: a new value repaints the gauge alone, not the card beneath it.
    setAutoFillBackground(true);
    // Start as a gauge that differs from any real one, so the first setGauge draws.
    m_gauge.value = -1;
}

void MetricGaugeView::setGauge(const MetricGauge &gauge)
{
    if (gauge == m_gauge)
        return;
    if (gauge.title != m_gauge.title || gauge.systemImage != m_gauge.systemImage)
        m_staticParts = QPixmap();
    m_gauge = gauge;
    setAccessibleName(gauge.accessibleText());
    update();
}

QSize MetricGaugeView::sizeHint() const
{
    const QFontMetrics caption(ViewFonts::caption(font()));
    return {ringDiameter + 24, ringDiameter + gap + std::max(caption.height(), symbolSize) + 2};
}

void MetricGaugeView::resizeEvent(QResizeEvent *event)
{
    m_staticParts = QPixmap();
    QWidget::resizeEvent(event);
}

void MetricGaugeView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        m_staticParts = QPixmap();
    QWidget::changeEvent(event);
}

QPixmap MetricGaugeView::staticParts()
{
    if (!m_staticParts.isNull())
        return m_staticParts;
    const qreal scale = devicePixelRatioF();
    QPixmap pixmap(size() * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor track = palette().color(QPalette::WindowText);
    track.setAlphaF(0.1);
    painter.setPen(QPen(track, ringWidth));
    painter.drawEllipse(ringRect(width()));

    const QFont caption = ViewFonts::caption(font());
    painter.setFont(caption);
    const QFontMetrics metrics(caption);
    const int rowTop = ringDiameter + gap;
    // A title too long for the gauge with its symbol (a longer language) keeps the title
    // whole and leaves the symbol out.
    const int titleWidth = metrics.horizontalAdvance(m_gauge.title);
    const bool withSymbol = symbolSize + gap + titleWidth <= width();
    const int symbolWidth = withSymbol ? symbolSize + gap : 0;
    const int left = std::max(0, (width() - symbolWidth - titleWidth) / 2);
    const QColor secondary = ToneColors::color(Tone::secondary, palette());
    if (withSymbol)
        SymbolIcon::icon(m_gauge.systemImage, secondary)
            .paint(&painter, QRect(left, rowTop + (metrics.height() - symbolSize) / 2, symbolSize,
                                   symbolSize));
    painter.setPen(secondary);
    painter.drawText(QRect(left + symbolWidth, rowTop, width(), metrics.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, m_gauge.title);
    painter.end();
    m_staticParts = pixmap;
    return m_staticParts;
}

void MetricGaugeView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, staticParts());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = ringRect(width());
    if (const int span = qRound(m_gauge.fill() * 360 * 16); span > 0) {
        painter.setPen(QPen(ToneColors::color(m_gauge.tone(), palette()), ringWidth, Qt::SolidLine,
                            Qt::RoundCap));
        painter.drawArc(ring, 90 * 16, -span); // clockwise from the top
    }
    const QFont font = labelFont(this->font());
    const QStaticText &label = staticLabel(m_gauge.label(), font);
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::WindowText));
    const QSizeF labelSize = label.size();
    painter.drawStaticText(QPointF(ring.center().x() - labelSize.width() / 2,
                                   ring.center().y() - labelSize.height() / 2),
                           label);
}
