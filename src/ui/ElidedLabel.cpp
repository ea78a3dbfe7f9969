#include "ElidedLabel.h"

#include <QEvent>
#include <QPainter>

ElidedLabel::ElidedLabel(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString &text)
{
    if (text == m_text)
        return;
    const bool widthMayChange = sizePolicy().horizontalPolicy() != QSizePolicy::Ignored;
    m_text = text;
    setToolTip(text);
    setAccessibleName(text);
    if (widthMayChange)
        updateGeometry();
    update();
}

void ElidedLabel::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    update();
}

void ElidedLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

QSize ElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(m_text) + 2, metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("M…")), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(m_color.isValid() ? m_color : palette().color(QPalette::WindowText));
    const QString shown = fontMetrics().elidedText(m_text, Qt::ElideRight, width());
    painter.drawText(rect(), int(m_alignment), shown);
}

void ElidedLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QWidget::changeEvent(event);
}
