#pragma once

#include "ZEKTDiskVolumeInfo.h"
#include "ZEKTMessage.h"

#include <QDateTime>
#include <QList>
#include <optional>

class SystemStatsMessage : public ZEKTMessage {
public:
    Type type() const override { return Type::systemStats; }
    QString typeName() const override { return QStringLiteral("SystemStatsMessage"); }

    quint64 totalMemory = 0;
    quint64 freeMemory = 0;
    quint64 totalDiskSpace = 0;
    quint64 freeDiskSpace = 0;
    QString osVersion;
    QString macModel;
    double cpuUsage = 0.0;
    QString activeProcess;
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
    std::optional<QList<ZEKTDiskVolumeInfo>> diskVolumes;
};
