#include "ElidedLabel.h"

#include <QPainter>

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent) : QLabel(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setTextFormat(Qt::PlainText);
    setText(text);
}

void ElidedLabel::setText(const QString &text)
{
    if (text == QLabel::text())
        return;
    QLabel::setText(text);
    setToolTip(text);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return QSize(fontMetrics().horizontalAdvance(QStringLiteral("Connecting…")),
                 QLabel::minimumSizeHint().height());
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect area = contentsRect();
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(area, int(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, area.width()));
}
