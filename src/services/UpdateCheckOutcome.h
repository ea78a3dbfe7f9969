#pragma once

#include "UpdateInfo.h"

#include <QString>

// How one update check ended: a newer version, a failure with its message, or nothing newer.
struct UpdateCheckOutcome {
    enum class Kind { updateAvailable, checkFailed, upToDate };

    Kind kind = Kind::upToDate;
    UpdateInfo info; // updateAvailable only
    QString message; // checkFailed only

    static UpdateCheckOutcome updateAvailable(UpdateInfo info)
    {
        return {Kind::updateAvailable, std::move(info), {}};
    }
    static UpdateCheckOutcome checkFailed(QString message)
    {
        return {Kind::checkFailed, {}, std::move(message)};
    }
    static UpdateCheckOutcome upToDate() { return {}; }

    friend bool operator==(const UpdateCheckOutcome &, const UpdateCheckOutcome &) = default;
};
