#pragma once

#include "model/RemoteComputer.h"

#include <QString>

// A computer as the automation side shows it: its id text and its display name.
struct ComputerEntity {
    QString id;            // canonical upper-case UUID text
    QString displayString; // the display name

    static ComputerEntity from(const RemoteComputer &computer);
    static QString typeDisplayName();

    bool operator==(const ComputerEntity &) const = default;
};
