#include "SimulatedStatsProvider.h"

#include <QUuid>

#include <cmath>

namespace {
constexpr quint64 GiB = 1024ull * 1024 * 1024;
}

SimulatedStatsProvider::SimulatedStatsProvider(int index, QString agentVersion)
    : m_index(index), m_agentVersion(std::move(agentVersion))
{
    m_clock.start();
    // As if booted a few hours before the agent started.
    m_bootTime = QDateTime::currentDateTimeUtc().addSecs(-(3 * 3600 + 17 * 60 + index * 60));
}

SystemStatsMessage SimulatedStatsProvider::collect()
{
    return reportAt(double(m_clock.elapsed()) / 1000.0);
}

SystemStatsMessage SimulatedStatsProvider::reportAt(double seconds) const
{
    SystemStatsMessage s;
    const double wave = std::sin(seconds / 7.0 + m_index);
    const double slow = std::sin(seconds / 60.0 + m_index * 0.5);

    s.totalMemory = 16 * GiB;
    s.freeMemory = quint64((6.0 + 2.5 * wave) * double(GiB));
    s.totalDiskSpace = 512 * GiB;
    s.freeDiskSpace = quint64((210.0 - 0.01 * seconds + 3.0 * slow) * double(GiB));
    s.osVersion = QStringLiteral("Debian GNU/Linux 12 (bookworm) (simulated)");
    s.macModel = QStringLiteral("Simulated Linux computer");
    s.cpuUsage = std::clamp(0.25 + 0.2 * wave + 0.1 * std::sin(seconds * 1.7), 0.0, 1.0);
    static const QStringList apps = {QStringLiteral("firefox-esr"), QStringLiteral("code"),
                                     QStringLiteral("libreoffice"),
                                     QStringLiteral("gnome-terminal")};
    s.activeProcess = apps[qsizetype(seconds / 20.0 + m_index) % apps.size()];
    s.uptimeSeconds = quint64(m_bootTime.secsTo(QDateTime::currentDateTimeUtc()));
    s.agentVersion = m_agentVersion;
    s.screenCaptureAuthorized = true;
    s.accessibilityAuthorized = true;
    s.screenLocked = std::fmod(seconds, 300.0) > 270.0;
    s.primaryIPAddress = QStringLiteral("192.0.2.%1").arg(10 + m_index % 240);
    s.loggedInUser = QStringLiteral("demo");
    s.networkName = QStringLiteral("sim-agent-%1").arg(m_index + 1);
    s.displayCount = 1;
    s.mainDisplayResolution = QStringLiteral("1920x1080");
    s.serialNumber = QStringLiteral("SIM%1").arg(100000 + m_index);
    s.hardwareUUID =
        QUuid::createUuidV5(QUuid(), QStringLiteral("telvane-simulated-%1").arg(m_index))
            .toString(QUuid::WithoutBraces)
            .toUpper();
    s.fileVaultEnabled = true;
    s.sipEnabled = true;
    s.gatekeeperEnabled = true;
    s.mdmEnrolled = m_index % 2 == 0;
    s.lastBootTime = m_bootTime;
    s.lastSleepCause = QStringLiteral("Idle Sleep");
    s.lastWakeCause = QStringLiteral("User Activity");
    s.diskVolumes = QList<ZEKTDiskVolumeInfo>{
        {QStringLiteral("System"), QStringLiteral("/"), s.totalDiskSpace, s.freeDiskSpace},
        {QStringLiteral("Data"), QStringLiteral("/srv/data"), 2048 * GiB,
         quint64((900.0 + 20.0 * slow) * double(GiB))}};
    return s;
}
