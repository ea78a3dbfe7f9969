#pragma once

#include "presentation/MetricGauge.h"

#include <QPixmap>
#include <QWidget>

// A load gauge: a ring filled to the value in the gauge's colour with the percentage
// inside, the symbol and title beneath. Its accessible name reads "CPU 95%". Repaints
// only when the gauge changes, and then only itself: it paints its own background (the
// palette's background role), and the parts that never change with the value (track,
// symbol, title) are drawn once per size.
class MetricGaugeView : public QWidget {
    Q_OBJECT

public:
    explicit MetricGaugeView(QWidget *parent = nullptr);

    const MetricGauge &gauge() const { return m_gauge; }
    void setGauge(const MetricGauge &gauge);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QPixmap staticParts();

    MetricGauge m_gauge;
    QPixmap m_staticParts;
};
