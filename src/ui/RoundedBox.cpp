#include "RoundedBox.h"

#include <QPainter>
#include <QPainterPath>

namespace RoundedBox {

void paint(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
           const QColor &border, qreal borderWidth)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal inset = border.isValid() ? borderWidth / 2 : 0;
    QPainterPath box;
    box.addRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.fillPath(box, fill);
    if (border.isValid()) {
        painter.setPen(QPen(border, borderWidth));
        painter.drawPath(box);
    }
    painter.restore();
}

QColor faintFill(const QPalette &palette)
{
    QColor fill = palette.color(QPalette::WindowText);
    fill.setAlphaF(0.05);
    return fill;
}

} // namespace RoundedBox
