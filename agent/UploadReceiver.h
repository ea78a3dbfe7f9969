#pragma once

#include "ZEKTFileReceiver.h"

#include <QString>
#include <functional>
#include <optional>

// Accepts uploads into one folder. The remote name is reduced to a safe last component,
// data goes to a hidden temporary file that is renamed (never over an existing file)
// only when the library has verified the digest, and size and free space are checked
// before any data is accepted.
class UploadReceiver : public ZEKTFileReceiver {
public:
    using FreeSpaceFunction = std::function<std::optional<quint64>(const QString &folder)>;

    UploadReceiver(QString folder, qint64 maxFileSize);

    // Tests replace the free-space check (a full disk is hard to make without root).
    void setFreeSpaceFunction(FreeSpaceFunction function) { m_freeSpace = std::move(function); }

    Decision begin(const QString &remoteFileName, qint64 size) override;

    QString folder() const { return m_folder; }

    // "../../etc/passwd" → "passwd"; control characters dropped; empty, "." and ".."
    // become "upload"; leading dots removed so nothing arrives hidden; at most 255 bytes.
    static QString safeFileName(const QString &remoteFileName);
    // "name (1).ext" for the n-th alternative of "name.ext".
    static QString numberedName(const QString &fileName, int n);

private:
    QString m_folder;
    qint64 m_maxFileSize;
    FreeSpaceFunction m_freeSpace;
};
