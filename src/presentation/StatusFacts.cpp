#include "StatusFacts.h"

#include "ByteCountFormat.h"
#include "model/SystemStats.h"

quint64 StatusFacts::usedPercent(quint64 total, quint64 free)
{
    const quint64 used = free >= total ? 0 : total - free;
    const quint64 divisor = total <= 1 && free >= total ? 1 : total;
    // used * 100 does not fit 64 bits for counts above 2^64 / 100.
    return quint64((unsigned __int128)used * 100 / divisor);
}

QList<FactTile> StatusFacts::tiles(const SystemStats &stats)
{
    const auto percent = [](quint64 value) { return tr("%1%").arg(value); };
    return {
        {tr("Memory Used"), percent(usedPercent(stats.totalMemory, stats.freeMemory))},
        {tr("Disk Used"), percent(usedPercent(stats.totalDiskSpace, stats.freeDiskSpace))},
        {tr("Disk Free"),
         ByteCountFormat::format(stats.freeDiskSpace, ByteCountFormat::Style::file)},
    };
}
