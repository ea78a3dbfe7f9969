#pragma once

#include "ComputerEntity.h"

#include <QString>
#include <optional>

// The values an automation action is run with; every one is optional.
struct IntentParameters {
    // A file handed over for upload: its location (absent when it has none) and its name.
    struct File {
        std::optional<QString> location;
        QString name;
    };

    std::optional<ComputerEntity> computer;
    std::optional<QString> computerName;
    std::optional<File> file;
};
