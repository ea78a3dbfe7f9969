#include "StagedUploads.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace StagedUploads {

int sweep(const QString &directory, const QSet<QString> &named, const QDateTime &cutoff)
{
    int removed = 0;
    const QFileInfoList entries =
        QDir(directory).entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &entry : entries) {
        if (named.contains(entry.absoluteFilePath()) || entry.lastModified() >= cutoff)
            continue;
        if (QFile::remove(entry.absoluteFilePath()))
            ++removed;
    }
    return removed;
}

} // namespace StagedUploads
