#include "DashboardSummary.h"

#include "model/RemoteComputer.h"

DashboardSummary DashboardSummary::of(const QList<RemoteComputer> &computers)
{
    DashboardSummary summary;
    summary.total = int(computers.size());
    for (const RemoteComputer &computer : computers) {
        summary.connected += computer.isConnected;
        summary.connecting += computer.isConnecting;
        summary.issues +=
            !computer.isConnected && computer.lastError && !computer.lastError->isEmpty();
    }
    return summary;
}

int DashboardSummary::disconnected() const
{
    return std::max(total - connected - connecting, 0);
}

QList<SummaryTile> DashboardSummary::tiles() const
{
    return {
        {tr("Total Macs"), QString::number(total), QStringLiteral("desktopcomputer"), Tone::accent},
        {tr("Connected"), QString::number(connected), QStringLiteral("checkmark.circle.fill"),
         Tone::green},
        {tr("Disconnected"), QString::number(disconnected()), QStringLiteral("pause.circle.fill"),
         Tone::secondary},
        {tr("Connection Issues"), QString::number(issues),
         QStringLiteral("exclamationmark.triangle.fill"), Tone::orange},
    };
}
