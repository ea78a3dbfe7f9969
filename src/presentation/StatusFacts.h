#pragma once

#include "FactTile.h"

#include <QCoreApplication>
#include <QList>

struct SystemStats;

// The detail's three fact tiles: memory used, disk used (whole percent, truncated) and
// disk free.
class StatusFacts {
    Q_DECLARE_TR_FUNCTIONS(StatusFacts)

public:
    // The whole percent used: the used part is 0 when free is at least the total, and the
    // divisor is 1 when the total is at most 1 and nothing is used, so a zero total gives
    // 0. Exact for any 64-bit counts.
    static quint64 usedPercent(quint64 total, quint64 free);

    static QList<FactTile> tiles(const SystemStats &stats);
};
