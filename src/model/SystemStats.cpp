#include "SystemStats.h"

size_t qHash(const SystemStats &s, size_t seed)
{
    seed = FieldHash::combine(seed, s.totalMemory, s.freeMemory, s.totalDiskSpace, s.freeDiskSpace,
                              s.osVersion, s.macModel, s.cpuUsage, s.activeProcess, s.uptimeSeconds,
                              s.agentVersion, s.screenCaptureAuthorized, s.accessibilityAuthorized);
    seed =
        FieldHash::combine(seed, s.screenLocked, s.primaryIPAddress, s.loggedInUser, s.networkName,
                           s.displayCount, s.mainDisplayResolution, s.serialNumber, s.hardwareUUID,
                           s.fileVaultEnabled, s.sipEnabled, s.gatekeeperEnabled, s.mdmEnrolled);
    return FieldHash::combine(seed, s.lastBootTime, s.lastSleepCause, s.lastWakeCause,
                              s.diskVolumes);
}
