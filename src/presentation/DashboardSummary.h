#pragma once

#include "SummaryTile.h"

#include <QCoreApplication>
#include <QList>

struct RemoteComputer;

// The counts of the dashboard's summary strip over the whole list. A computer that is
// connected and connecting counts as both; one that is not connected and has an error
// counts as disconnected and as an issue.
struct DashboardSummary {
    int total = 0;
    int connected = 0;
    int connecting = 0;
    // Not connected, with an error that is not empty.
    int issues = 0;

    static DashboardSummary of(const QList<RemoteComputer> &computers);
    // Never below 0.
    int disconnected() const;
    // "Total Macs", "Connected", "Disconnected", "Connection Issues".
    QList<SummaryTile> tiles() const;

    bool operator==(const DashboardSummary &) const = default;

    Q_DECLARE_TR_FUNCTIONS(DashboardSummary)
};
