#include "ITInventory.h"

#include "ByteCountFormat.h"
#include "DateTimeText.h"
#include "ReportedText.h"
#include "model/SystemStats.h"

namespace {

void addText(InventoryGroup &group, const QString &label, const std::optional<QString> &value)
{
    if (value && !value->isEmpty())
        group.rows.append({label, ReportedText::shown(*value)});
}

void addFlag(InventoryGroup &group, const QString &label, std::optional<bool> value,
             const QString &on, const QString &off)
{
    if (value)
        group.rows.append({label, *value ? on : off});
}

} // namespace

QList<InventoryGroup> ITInventory::groups(const SystemStats &stats, const QLocale &locale)
{
    QList<InventoryGroup> groups;

    InventoryGroup identity{tr("Asset Identity"), {}};
    addText(identity, tr("Serial Number"), stats.serialNumber);
    addText(identity, tr("Hardware UUID"), stats.hardwareUUID);
    if (!identity.rows.isEmpty())
        groups.append(identity);

    if (stats.fileVaultEnabled || stats.sipEnabled || stats.gatekeeperEnabled ||
        stats.mdmEnrolled) {
        InventoryGroup security{tr("Security Posture"), {}};
        addFlag(security, tr("FileVault"), stats.fileVaultEnabled, tr("Enabled"), tr("Disabled"));
        addFlag(security, tr("Gatekeeper"), stats.gatekeeperEnabled, tr("Enabled"), tr("Disabled"));
        addFlag(security, tr("MDM Enrollment"), stats.mdmEnrolled, tr("Enrolled"),
                tr("Not Enrolled"));
        groups.append(security);
    }

    InventoryGroup power{tr("Power & Boot"), {}};
    if (stats.lastBootTime && stats.lastBootTime->isValid())
        power.rows.append({tr("Last Boot"), DateTimeText::format(*stats.lastBootTime, locale)});
    addText(power, tr("Last Sleep"), stats.lastSleepCause);
    addText(power, tr("Last Wake"), stats.lastWakeCause);
    if (!power.rows.isEmpty())
        groups.append(power);

    if (stats.diskVolumes && !stats.diskVolumes->isEmpty()) {
        InventoryGroup volumes{tr("Disk Volumes"), {}};
        for (const DiskVolumeInfo &volume : *stats.diskVolumes) {
            const auto bytes = [&locale](quint64 count) {
                return ByteCountFormat::format(count, ByteCountFormat::Style::file, locale);
            };
            volumes.rows.append(
                {ReportedText::shown(volume.name),
                 tr("%1 free of %2").arg(bytes(volume.freeBytes), bytes(volume.totalBytes))});
        }
        groups.append(volumes);
    }
    return groups;
}
