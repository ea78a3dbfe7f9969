#pragma once

#include "HealthStatus.h"
#include "MetricGauge.h"
#include "SpecPill.h"
#include "TechnicalSpecPills.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QLocale>
#include <QString>
#include <optional>

struct RemoteComputer;

// Everything a dashboard card shows, derived from one computer and the display switches.
// Cards keep the last one and update only the parts that differ from the next.
struct ComputerCardContent {
    struct Switches {
        bool showHealthMetrics = true;
        bool showTechnicalSpecs = true;
        bool showScreenPreview = false;
        TechnicalSpecPills::Switches pills = TechnicalSpecPills::allOn();

        static Switches fromPreferences();
        bool operator==(const Switches &) const = default;
    };

    // The name, else the host, else "Unknown Computer".
    QString title;
    // "host:port", also with an empty host.
    QString subtitle;
    HealthStatus badge;
    // The last error, shown while not connected.
    std::optional<QString> errorText;
    // Empty when the gauges or the pills are switched off or there are no statistics.
    QList<MetricGauge> gauges;
    QList<SpecPill> pills;
    // No statistics, and gauges or pills switched on.
    bool showPlaceholder = false;
    // "Last connected …", empty when never connected.
    QString lastConnectedText;
    bool showPreview = false;
    // The encoded thumbnail, when the preview shows.
    std::optional<QByteArray> thumbnail;
    bool isConnected = false;

    static ComputerCardContent of(const RemoteComputer &computer, const Switches &switches,
                                  const QLocale &locale = QLocale());
    static QString titleOf(const RemoteComputer &computer);

    bool operator==(const ComputerCardContent &) const = default;

    Q_DECLARE_TR_FUNCTIONS(ComputerCardContent)
};
