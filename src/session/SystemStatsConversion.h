#pragma once

#include "model/SystemStats.h"

class SystemStatsMessage;

namespace SystemStatsConversion {

// The snapshot of one statistics report; absent optional fields stay absent.
SystemStats fromMessage(const SystemStatsMessage &message);

} // namespace SystemStatsConversion
