#pragma once

#include "SystemStatsMessage.h"

// Builds one statistics report. Called on a worker thread; must be thread-safe.
class ZEKTStatsProvider {
public:
    virtual ~ZEKTStatsProvider() = default;
    virtual SystemStatsMessage collect() = 0;
};
