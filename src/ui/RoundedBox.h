#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>

class QPainter;

// The rounded boxes of the dashboard and the detail: cards, tiles, pills, placeholders.
namespace RoundedBox {

// Fills `rect` and, with a valid `border`, outlines it inside `rect`. Antialiased.
void paint(QPainter &painter, const QRectF &rect, qreal radius, const QColor &fill,
           const QColor &border = QColor(), qreal borderWidth = 1);
// A faint shade of the text colour: a box on a box, or an empty place.
QColor faintFill(const QPalette &palette);

} // namespace RoundedBox
