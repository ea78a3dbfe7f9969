#pragma once

#include "presentation/SpecPill.h"

#include <QWidget>

// One technical pill: symbol, then the title over the value, in a rounded box of a fixed
// height; a value too long for it is cut with an ellipsis and shown whole in the tool tip.
// Compact pills (dashboard cards) are smaller.
class SpecPillView : public QWidget {
    Q_OBJECT

public:
    explicit SpecPillView(bool compact, QWidget *parent = nullptr);

    const SpecPill &pill() const { return m_pill; }
    void setPill(const SpecPill &pill);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_compact;
    SpecPill m_pill;
};
