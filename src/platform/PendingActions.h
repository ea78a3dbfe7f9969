#pragma once

#include <QString>
#include <QUuid>
#include <optional>

// The requests taken from the pending-action queue in one read; each is present only
// when its entry was well formed (and has therefore been removed from the suite).
struct PendingActions {
    struct Upload {
        QString filePath;
        QString fileName;
        QUuid computerId;
    };

    std::optional<QUuid> connection;
    std::optional<QUuid> disconnection;
    std::optional<QUuid> remoteControl;
    std::optional<QUuid> stopRemoteControl;
    std::optional<Upload> fileUpload;

    bool isEmpty() const
    {
        return !connection && !disconnection && !remoteControl && !stopRemoteControl && !fileUpload;
    }
};
