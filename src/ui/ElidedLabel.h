#pragma once

#include <QColor>
#include <QWidget>

// One line of text cut with an ellipsis when it does not fit, with the whole text as its
// tool tip and accessible name. Its height never depends on the text, so a changing value
// never moves the widgets around it. Repaints only when the text or colour changes.
class ElidedLabel : public QWidget {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);
    // An invalid colour draws in the palette's text colour.
    void setColor(const QColor &color);
    void setAlignment(Qt::Alignment alignment);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QString m_text;
    QColor m_color;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
};
