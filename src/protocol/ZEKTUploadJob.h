#pragma once

#include "ZEKTIncomingFile.h"
#include "ZEKTSha256.h"

#include <memory>

// One accepted upload as the server's file worker sees it: the sink, the running SHA-256
// and the first write error. Used only on that worker (one thread, so chunks keep their
// order). Whoever drops the last reference to an unfinished job discards the partial
// file, so a session that ends mid-upload leaves nothing behind.
struct ZEKTUploadJob {
    explicit ZEKTUploadJob(std::unique_ptr<ZEKTIncomingFile> sink) : file(std::move(sink)) {}
    ~ZEKTUploadJob()
    {
        if (file && !finished)
            file->discard();
    }
    ZEKTUploadJob(const ZEKTUploadJob &) = delete;
    ZEKTUploadJob &operator=(const ZEKTUploadJob &) = delete;

    std::unique_ptr<ZEKTIncomingFile> file;
    ZEKTSha256 hash;
    QString failure;
    bool finished = false;
};
