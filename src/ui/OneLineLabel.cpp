#include "OneLineLabel.h"

#include "FormWidgets.h"

OneLineLabel::OneLineLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void OneLineLabel::setFullText(const QString &text)
{
    m_fullText = text;
    setToolTip(text);
    setAccessibleName(FormWidgets::oneLine(text));
    elide();
}

QSize OneLineLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

QSize OneLineLabel::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 40, QLabel::sizeHint().height()};
}

void OneLineLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    elide();
}

void OneLineLabel::elide()
{
    setText(fontMetrics().elidedText(FormWidgets::oneLine(m_fullText), Qt::ElideRight,
                                     contentsRect().width()));
}
