#pragma once

#include "Tone.h"

#include <QCoreApplication>
#include <QString>

// A computer's health as its badge shows it: the first that holds of connected,
// connecting, an error, else offline.
struct HealthStatus {
    QString text;
    Tone tone = Tone::secondary;

    static HealthStatus of(bool isConnected, bool isConnecting, bool hasError);

    bool operator==(const HealthStatus &) const = default;

    Q_DECLARE_TR_FUNCTIONS(HealthStatus)
};
