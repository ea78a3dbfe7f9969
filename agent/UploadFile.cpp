#include "UploadFile.h"

#include "UploadReceiver.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString describeWriteError(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("Not enough disk space to store the file");
    case EFBIG:
        return QStringLiteral("The file is larger than this computer allows");
    default:
        return QStringLiteral("The file cannot be written: %1")
            .arg(QString::fromLocal8Bit(strerror(error)));
    }
}

// Renames without ever replacing an existing file; false with errno on failure.
bool renameNoReplace(const QByteArray &from, const QByteArray &to)
{
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // File systems without RENAME_NOREPLACE: link() also refuses an existing target.
    if (link(from.constData(), to.constData()) != 0)
        return false;
    unlink(from.constData());
    return true;
}

} // namespace

UploadFile::UploadFile(QString folder, QString fileName, QString tempPath, int fd,
                       qint64 expectedSize)
    : m_folder(std::move(folder)), m_fileName(std::move(fileName)), m_tempPath(std::move(tempPath)),
      m_fd(fd), m_expectedSize(expectedSize)
{
}

UploadFile::~UploadFile()
{
    if (!m_finished)
        discard();
}

std::optional<QString> UploadFile::write(const QByteArray &chunk)
{
    if (m_finished || m_fd < 0)
        return QStringLiteral("The upload is already finished");
    if (m_written + chunk.size() > m_expectedSize)
        return QStringLiteral("More data than announced");
    const char *data = chunk.constData();
    qsizetype left = chunk.size();
    while (left > 0) {
        const ssize_t n = ::write(m_fd, data, size_t(left));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return describeWriteError(n < 0 ? errno : ENOSPC);
        data += n;
        left -= n;
        m_written += n;
    }
    return std::nullopt;
}

ZEKTIncomingFile::Committed UploadFile::commit()
{
    Committed result;
    if (m_finished || m_fd < 0) {
        result.message = QStringLiteral("The upload is already finished");
        return result;
    }
    if (m_written != m_expectedSize) {
        discard();
        result.message = QStringLiteral("The file arrived incomplete");
        return result;
    }
    // A received file is user data: the user's alone, like the temporary file it was.
    if (fdatasync(m_fd) != 0 || fchmod(m_fd, 0600) != 0 || ::close(m_fd) != 0) {
        const int error = errno;
        m_fd = -1;
        discard();
        result.message = describeWriteError(error);
        return result;
    }
    m_fd = -1;
    const QByteArray from = QFile::encodeName(m_tempPath);
    for (int n = 0; n < 10000; ++n) {
        const QString name = n == 0 ? m_fileName : UploadReceiver::numberedName(m_fileName, n);
        if (renameNoReplace(from, QFile::encodeName(m_folder + QLatin1Char('/') + name))) {
            m_finished = true;
            result.success = true;
            result.message = name;
            return result;
        }
        if (errno != EEXIST) {
            const int error = errno;
            discard();
            result.message = describeWriteError(error);
            return result;
        }
    }
    discard();
    result.message = QStringLiteral("No free file name for %1").arg(m_fileName);
    return result;
}

void UploadFile::discard()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    if (!m_finished)
        unlink(QFile::encodeName(m_tempPath).constData());
    m_finished = true;
}
