#pragma once

#include "Tone.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

struct SystemStats;

// One load gauge (CPU, memory, disk): a fraction where 1 is full, as reported, which may
// be negative, above 1 or not a number. The ring, colour and label make sense of any.
struct MetricGauge {
    QString title;
    double value = 0;
    QString systemImage;

    // Red from 0.9 (above 1 included), orange from 0.75, else the accent colour (also for
    // negative values and NaN).
    Tone tone() const;
    // The part of the ring filled: the value within 0 and 1 (0 for NaN).
    double fill() const;
    // The whole percent of min(value, 1), "0%" for negative values and NaN.
    QString label() const;
    // "CPU 95%", for assistive technology.
    QString accessibleText() const;

    // The used part of a capacity: 0 when free is at least the total or the total is 0.
    static double usedFraction(quint64 total, quint64 free);
    // CPU, Memory and Disk, in that order.
    static QList<MetricGauge> gauges(const SystemStats &stats);

    // Equal when they show the same: two NaN values are equal.
    bool operator==(const MetricGauge &other) const;

    Q_DECLARE_TR_FUNCTIONS(MetricGauge)
};
