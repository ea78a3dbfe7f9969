#pragma once

#include "InventoryGroup.h"

#include <QCoreApplication>
#include <QLocale>

struct SystemStats;

// The IT inventory of a statistics snapshot: asset identity, security posture, power and
// boot, disk volumes; a group shows only when it has something to show. Security posture
// shows when any of its four values is present, integrity protection included, which has
// no row of its own: with only that one, the heading shows without rows.
class ITInventory {
    Q_DECLARE_TR_FUNCTIONS(ITInventory)

public:
    static QList<InventoryGroup> groups(const SystemStats &stats,
                                        const QLocale &locale = QLocale());
};
