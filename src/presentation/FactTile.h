#pragma once

#include <QString>

// One titled fact of the detail's status page ("Memory Used", "63%").
struct FactTile {
    QString title;
    QString value;

    bool operator==(const FactTile &) const = default;
};
