#pragma once

#include "UpdateType.h"

#include <QString>
#include <optional>

// One version the update feed offers.
struct UpdateInfo {
    QString version;
    UpdateType type = UpdateType::minor;
    std::optional<QString> releaseNotes; // never empty when present
    QString downloadURL;                 // as the feed wrote it; may be empty

    friend bool operator==(const UpdateInfo &, const UpdateInfo &) = default;
};
