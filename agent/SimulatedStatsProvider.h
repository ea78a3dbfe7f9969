#pragma once

#include "ZEKTStatsProvider.h"

#include <QDateTime>
#include <QElapsedTimer>

// Plausible statistics that change over time, with every optional field present, for
// simulated agents. `index` tells the agents of a fleet apart.
class SimulatedStatsProvider : public ZEKTStatsProvider {
public:
    SimulatedStatsProvider(int index, QString agentVersion);

    SystemStatsMessage collect() override;
    // The report `seconds` after start; collect() uses the real elapsed time.
    SystemStatsMessage reportAt(double seconds) const;

private:
    int m_index;
    QString m_agentVersion;
    QElapsedTimer m_clock;
    QDateTime m_bootTime;
};
