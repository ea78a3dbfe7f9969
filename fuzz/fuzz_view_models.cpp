// Statistics come from agents and from a settings file anyone can edit: whatever numbers
// and texts they hold (NaN and huge loads, free above total, counts near 2^64, control
// characters), turning them into what the views show must neither crash nor overflow. The
// same input also goes through the log viewer's row split and the window placement.
#include "model/ComputerJson.h"
#include "presentation/ComputerCardContent.h"
#include "presentation/ComputerPreviewViewSnapshot.h"
#include "presentation/DashboardSummary.h"
#include "presentation/ITInventory.h"
#include "presentation/LogEntryRow.h"
#include "presentation/StatusFacts.h"
#include "presentation/WindowPlacement.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    // Log lines carry agents' texts: any text splits, and the time never holds a bracket.
    const LogEntryRow row = LogEntryRow::parse(QString::fromUtf8(input));
    if (row.time.contains(QLatin1Char(']')))
        std::abort();
    // A stored window geometry read as four numbers always lands on the primary screen.
    if (size >= 8) {
        qint16 v[4]; // the range of real screens; QRect itself overflows near 2^31
        std::memcpy(v, data, sizeof v);
        const QRect primary(0, 0, 1280, 800);
        const QRect placed = WindowPlacement::onVisibleScreen(QRect(v[0], v[1], v[2], v[3]),
                                                              {primary}, primary, QSize(800, 600));
        if (!placed.intersects(primary))
            std::abort();
    }
    const auto computers = ComputerJson::decodeList(input);
    if (!computers)
        return 0;
    (void)DashboardSummary::of(*computers).tiles();
    ComputerCardContent::Switches switches;
    switches.showScreenPreview = true;
    for (const RemoteComputer &computer : *computers) {
        const ComputerCardContent card = ComputerCardContent::of(computer, switches);
        for (const MetricGauge &gauge : card.gauges) {
            if (gauge.fill() < 0 || gauge.fill() > 1)
                std::abort();
            (void)gauge.accessibleText();
        }
        ComputerPreviewViewSnapshot snapshot;
        snapshot.computerSnapshot = computer;
        const auto flags = snapshot.liveFlags(*computers);
        (void)ComputerPreviewViewSnapshot::statusLine(flags);
        (void)ComputerPreviewViewSnapshot::actionBar(flags);
        (void)snapshot.removalConfirmation();
        if (!computer.systemStats)
            continue;
        const SystemStats &stats = *computer.systemStats;
        (void)StatusFacts::tiles(stats);
        if (StatusFacts::usedPercent(stats.totalMemory, stats.freeMemory) > 100)
            std::abort();
        (void)ITInventory::groups(stats);
    }
    return 0;
}
