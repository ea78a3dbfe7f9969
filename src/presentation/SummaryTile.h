#pragma once

#include "Tone.h"

#include <QString>

// One counter of the dashboard's summary strip.
struct SummaryTile {
    QString title;
    QString value;
    QString systemImage;
    Tone color = Tone::accent;

    bool operator==(const SummaryTile &) const = default;
};
