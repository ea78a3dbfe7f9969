#include "ThumbnailView.h"

#include "RoundedBox.h"
#include "SymbolIcon.h"
#include "ToneColors.h"

#include <QPainter>
#include <QPainterPath>

namespace {
constexpr int symbolSize = 28;
constexpr int radius = 8;
} // namespace

ThumbnailView::ThumbnailView(QWidget *parent) : QWidget(parent) {}

void ThumbnailView::setImage(const QImage &image)
{
    m_image = image;
    m_scaled = QPixmap();
    m_symbol.clear();
    m_text.clear();
    setAccessibleName(tr("Screen preview"));
    update();
}

void ThumbnailView::setPlaceholder(const QString &symbol, const QString &text)
{
    if (m_image.isNull() && symbol == m_symbol && text == m_text)
        return;
    m_image = QImage();
    m_scaled = QPixmap();
    m_symbol = symbol;
    m_text = text;
    setAccessibleName(text);
    update();
}

QSize ThumbnailView::sizeHint() const
{
    return {320, 180};
}

void ThumbnailView::resizeEvent(QResizeEvent *event)
{
    m_scaled = QPixmap();
    QWidget::resizeEvent(event);
}

void ThumbnailView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!m_image.isNull()) {
        const qreal scale = devicePixelRatioF();
        if (m_scaled.isNull()) {
            m_scaled = QPixmap::fromImage(
                m_image.scaled(size() * scale, Qt::KeepAspectRatio, Qt::SmoothTransformation));
            m_scaled.setDevicePixelRatio(scale);
        }
        const QSizeF shown = m_scaled.deviceIndependentSize();
        const QPointF at((width() - shown.width()) / 2, (height() - shown.height()) / 2);
        QPainterPath clip;
        clip.addRoundedRect(QRectF(at, shown), radius, radius);
        painter.setClipPath(clip);
        painter.drawPixmap(at, m_scaled);
        return;
    }
    RoundedBox::paint(painter, rect(), radius, RoundedBox::faintFill(palette()));
    const QColor secondary = ToneColors::color(Tone::secondary, palette());
    const QFontMetrics metrics = fontMetrics();
    const int top = (height() - symbolSize - 6 - metrics.height()) / 2;
    SymbolIcon::icon(m_symbol, secondary)
        .paint(&painter, QRect((width() - symbolSize) / 2, top, symbolSize, symbolSize));
    painter.setPen(secondary);
    painter.drawText(QRect(4, top + symbolSize + 6, width() - 8, metrics.height()), Qt::AlignCenter,
                     metrics.elidedText(m_text, Qt::ElideRight, width() - 8));
}
