#pragma once

#include <QByteArray>
#include <QString>

// Result of one capture by a ZEKTScreenProvider.
struct ZEKTCapturedFrame {
    enum class Status { ok, unchanged, failed };
    Status status = Status::failed;
    QByteArray imageData; // JPEG when status is ok
    quint32 width = 0;    // captured pixels
    quint32 height = 0;
    QString error; // readable reason when status is failed ("No display available", ...)
};
