#pragma once

#include <QLabel>

// A one-line label that ends its text with "…" when it does not fit, and never asks its
// layout for the width of the whole text; the whole text is its tooltip.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(const QString &text = {}, QWidget *parent = nullptr);

    void setText(const QString &text);
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
