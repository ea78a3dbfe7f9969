#pragma once

#include "model/SystemStats.h"

// Statistics for tests: the six fields every report has (16 GiB of memory with 4 free,
// a 1 TB disk with 494.38 GB free), and the same with every pill's value present.
namespace SampleStatistics {

inline SystemStats required()
{
    SystemStats s;
    s.totalMemory = 17179869184;
    s.freeMemory = 4294967296;
    s.totalDiskSpace = 1000000000000;
    s.freeDiskSpace = 494384795648;
    s.osVersion = QStringLiteral("14.2");
    s.macModel = QStringLiteral("Mac14,2");
    return s;
}

inline SystemStats everyPill()
{
    SystemStats s = required();
    s.cpuUsage = 0.2;
    s.activeProcess = QStringLiteral("Terminal");
    s.uptimeSeconds = 3700;
    s.agentVersion = QStringLiteral("1.4.0");
    s.screenCaptureAuthorized = true;
    s.accessibilityAuthorized = false;
    s.screenLocked = true;
    s.primaryIPAddress = QStringLiteral("10.0.0.7");
    s.loggedInUser = QStringLiteral("ada");
    s.networkName = QStringLiteral("Office");
    s.displayCount = 2;
    s.mainDisplayResolution = QStringLiteral("2560x1440");
    return s;
}

} // namespace SampleStatistics
