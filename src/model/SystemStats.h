#pragma once

#include "DiskVolumeInfo.h"
#include "FieldHash.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

// The last statistics snapshot of a computer. Built once from an agent report and
// replaced whole by the next one; an absent optional field is a state of its own.
struct SystemStats {
    quint64 totalMemory = 0;
    quint64 freeMemory = 0;
    quint64 totalDiskSpace = 0;
    quint64 freeDiskSpace = 0;
    QString osVersion;
    QString macModel;
    std::optional<double> cpuUsage;
    std::optional<QString> activeProcess;
    std::optional<quint64> uptimeSeconds;
    std::optional<QString> agentVersion;
    std::optional<bool> screenCaptureAuthorized;
    std::optional<bool> accessibilityAuthorized;
    std::optional<bool> screenLocked;
    std::optional<QString> primaryIPAddress;
    std::optional<QString> loggedInUser;
    std::optional<QString> networkName;
    std::optional<quint32> displayCount;
    std::optional<QString> mainDisplayResolution;
    std::optional<QString> serialNumber;
    std::optional<QString> hardwareUUID;
    std::optional<bool> fileVaultEnabled;
    std::optional<bool> sipEnabled;
    std::optional<bool> gatekeeperEnabled;
    std::optional<bool> mdmEnrolled;
    std::optional<QDateTime> lastBootTime;
    std::optional<QString> lastSleepCause;
    std::optional<QString> lastWakeCause;
    std::optional<QList<DiskVolumeInfo>> diskVolumes;

    bool operator==(const SystemStats &) const = default;
};

size_t qHash(const SystemStats &stats, size_t seed = 0);
