#pragma once

#include <QString>
#include <QtGlobal>

struct ZEKTDiskVolumeInfo {
    QString name;
    QString path;
    quint64 totalBytes = 0;
    quint64 freeBytes = 0;

    bool operator==(const ZEKTDiskVolumeInfo &) const = default;
};
