#pragma once

#include "presentation/MetricGauge.h"

#include <QWidget>

// A load gauge: a ring filled to the value in the gauge's colour with the percentage
// inside, the symbol and title beneath. Its accessible name reads "CPU 95%". Repaints
// only when the gauge changes.
class MetricGaugeView : public QWidget {
    Q_OBJECT

public:
    explicit MetricGaugeView(QWidget *parent = nullptr);

    const MetricGauge &gauge() const { return m_gauge; }
    void setGauge(const MetricGauge &gauge);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    MetricGauge m_gauge;
};
