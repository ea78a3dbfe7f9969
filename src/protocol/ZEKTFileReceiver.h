#pragma once

#include "ZEKTIncomingFile.h"

#include <memory>

// Decides whether an announced upload is accepted, before any data is sent.
// Called on a worker thread; must be thread-safe.
class ZEKTFileReceiver {
public:
    virtual ~ZEKTFileReceiver() = default;
    struct Decision {
        std::unique_ptr<ZEKTIncomingFile> file; // null when refused
        QString refusal;                        // readable reason when refused
    };
    virtual Decision begin(const QString &remoteFileName, qint64 size) = 0;
};
