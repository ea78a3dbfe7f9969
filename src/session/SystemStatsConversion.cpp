#include "SystemStatsConversion.h"

#include "protocol/SystemStatsMessage.h"

namespace SystemStatsConversion {

SystemStats fromMessage(const SystemStatsMessage &m)
{
    SystemStats s;
    s.totalMemory = m.totalMemory;
    s.freeMemory = m.freeMemory;
    s.totalDiskSpace = m.totalDiskSpace;
    s.freeDiskSpace = m.freeDiskSpace;
    s.osVersion = m.osVersion;
    s.macModel = m.macModel;
    s.cpuUsage = m.cpuUsage;
    s.activeProcess = m.activeProcess;
    s.uptimeSeconds = m.uptimeSeconds;
    s.agentVersion = m.agentVersion;
    s.screenCaptureAuthorized = m.screenCaptureAuthorized;
    s.accessibilityAuthorized = m.accessibilityAuthorized;
    s.screenLocked = m.screenLocked;
    s.primaryIPAddress = m.primaryIPAddress;
    s.loggedInUser = m.loggedInUser;
    s.networkName = m.networkName;
    s.displayCount = m.displayCount;
    s.mainDisplayResolution = m.mainDisplayResolution;
    s.serialNumber = m.serialNumber;
    s.hardwareUUID = m.hardwareUUID;
    s.fileVaultEnabled = m.fileVaultEnabled;
    s.sipEnabled = m.sipEnabled;
    s.gatekeeperEnabled = m.gatekeeperEnabled;
    s.mdmEnrolled = m.mdmEnrolled;
    s.lastBootTime = m.lastBootTime;
    s.lastSleepCause = m.lastSleepCause;
    s.lastWakeCause = m.lastWakeCause;
    if (m.diskVolumes) {
        QList<DiskVolumeInfo> volumes;
        volumes.reserve(m.diskVolumes->size());
        for (const ZEKTDiskVolumeInfo &v : *m.diskVolumes)
            volumes.append(DiskVolumeInfo{v.name, v.path, v.totalBytes, v.freeBytes});
        s.diskVolumes = std::move(volumes);
    }
    return s;
}

} // namespace SystemStatsConversion
