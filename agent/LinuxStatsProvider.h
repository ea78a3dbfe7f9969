#pragma once

#include "DisplayFacts.h"
#include "LinuxSystemFacts.h"
#include "ZEKTStatsProvider.h"

#include <QElapsedTimer>
#include <QMutex>
#include <functional>

// Statistics of this Linux host from /proc, /sys, statvfs, os-release, DMI, getifaddrs,
// logind or utmp, and the display. Fields Linux cannot answer honestly stay absent.
class LinuxStatsProvider : public ZEKTStatsProvider {
public:
    using DisplayFactsSource = std::function<DisplayFacts()>;
    // `displayFacts` may be empty when the agent was built without X11.
    LinuxStatsProvider(QString agentVersion, DisplayFactsSource displayFacts);

    SystemStatsMessage collect() override;

private:
    double cpuUsage();

    QString m_agentVersion;
    DisplayFactsSource m_displayFacts;
    QMutex m_cpuMutex; // guards the CPU sample below
    std::optional<LinuxSystemFacts::CpuTimes> m_lastCpu;
    QElapsedTimer m_sinceLastCpu;
    double m_lastCpuFraction = 0.0;
};
