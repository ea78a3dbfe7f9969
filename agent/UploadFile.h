#pragma once

#include "ZEKTIncomingFile.h"

#include <QString>

// One upload being written to a hidden temporary file in the uploads folder.
class UploadFile : public ZEKTIncomingFile {
public:
    // Takes ownership of the open descriptor `fd` of `tempPath`.
    UploadFile(QString folder, QString fileName, QString tempPath, int fd, qint64 expectedSize);
    ~UploadFile() override;

    std::optional<QString> write(const QByteArray &chunk) override;
    Committed commit() override;
    void discard() override;

private:
    QString m_folder;
    QString m_fileName;
    QString m_tempPath;
    int m_fd;
    qint64 m_expectedSize;
    qint64 m_written = 0;
    bool m_finished = false;
};
