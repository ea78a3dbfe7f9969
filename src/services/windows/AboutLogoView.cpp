#include "AboutLogoView.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

namespace {

constexpr int markSize = 28;
constexpr int shadowRadius = 6;
const QColor brand(174, 27, 199); // the maker's purple

// The maker's mark: a ring with a short tail, the letter of the name.
void drawMark(QPainter &painter, const QRectF &box)
{
    const qreal stroke = box.width() * 0.16;
    const QRectF ring = box.adjusted(stroke / 2, stroke / 2, -stroke / 2, -stroke / 2);
    QPen pen(brand, stroke, Qt::SolidLine, Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(ring, 100 * 16, 300 * 16);
    const QPointF centre = box.center();
    painter.drawLine(centre + QPointF(box.width() * 0.10, box.height() * 0.10),
                     centre + QPointF(box.width() * 0.42, box.height() * 0.42));
}

} // namespace

AboutLogoView::AboutLogoView(QWidget *parent) : QWidget(parent)
{
    setAccessibleName(tr("Quorvel"));
    m_fadeIn.setStartValue(0.0);
    m_fadeIn.setEndValue(1.0);
    m_fadeIn.setDuration(fadeInMs);
    m_fadeIn.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_fadeIn, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_visibility = value.toDouble();
        update();
    });
}

QSize AboutLogoView::sizeHint() const
{
    const QFontMetrics metrics(font());
    return {markSize + 8 + metrics.horizontalAdvance(QStringLiteral("Quorvel")) + 2 * shadowRadius +
                4,
            markSize + 2 * shadowRadius};
}

void AboutLogoView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_hasAppeared)
        return;
    m_hasAppeared = true;
    m_fadeIn.start();
}

void AboutLogoView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_visibility);
    const QPointF centre = QRectF(rect()).center();
    const qreal scale = 0.94 + 0.06 * m_visibility;
    painter.translate(centre);
    painter.scale(scale, scale);
    painter.translate(-centre);

    const QRectF mark(shadowRadius, (height() - markSize) / 2.0, markSize, markSize);
    // The shadow: a soft disc under the mark, growing with the fade-in.
    const qreal spread = shadowRadius * m_visibility;
    if (spread > 0) {
        const QRectF shadow = mark.adjusted(-spread, -spread + 2, spread, spread + 2);
        QRadialGradient gradient(shadow.center(), shadow.width() / 2);
        gradient.setColorAt(0.6, QColor(0, 0, 0, int(255 * 0.16)));
        gradient.setColorAt(1.0, QColor(0, 0, 0, 0));
        painter.setPen(Qt::NoPen);
        painter.setBrush(gradient);
        painter.drawEllipse(shadow);
    }
    drawMark(painter, mark);

    QFont wordmark = font();
    wordmark.setBold(true);
    painter.setFont(wordmark);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(mark.right() + 8, 0, width() - mark.right() - 8, height()),
                     Qt::AlignVCenter | Qt::AlignLeft, QStringLiteral("Quorvel"));
}
