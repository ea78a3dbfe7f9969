#pragma once

#include "FieldHash.h"
#include <QString>

// One mounted volume of a statistics snapshot.
struct DiskVolumeInfo {
    QString name;
    QString path;
    quint64 totalBytes = 0;
    quint64 freeBytes = 0;

    bool operator==(const DiskVolumeInfo &) const = default;
};

inline size_t qHash(const DiskVolumeInfo &v, size_t seed = 0)
{
    return FieldHash::combine(seed, v.name, v.path, v.totalBytes, v.freeBytes);
}
