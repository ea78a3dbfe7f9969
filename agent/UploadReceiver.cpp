#include "UploadReceiver.h"

#include "UploadFile.h"
#include "posix/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

// Room left for the file system beyond the file itself.
constexpr quint64 kFreeSpaceMargin = 1024 * 1024;

std::optional<quint64> statvfsFreeSpace(const QString &folder)
{
    struct statvfs st {};
    if (statvfs(QFile::encodeName(folder).constData(), &st) != 0)
        return std::nullopt;
    return quint64(st.f_bavail) * st.f_frsize;
}

QString formatBytes(quint64 bytes)
{
    if (bytes >= 1024ull * 1024 * 1024)
        return QStringLiteral("%1 GB").arg(double(bytes) / (1024.0 * 1024 * 1024), 0, 'f', 1);
    if (bytes >= 1024ull * 1024)
        return QStringLiteral("%1 MB").arg(double(bytes) / (1024.0 * 1024), 0, 'f', 1);
    return QStringLiteral("%1 bytes").arg(bytes);
}

} // namespace

UploadReceiver::UploadReceiver(QString folder, qint64 maxFileSize)
    : m_folder(std::move(folder)), m_maxFileSize(maxFileSize), m_freeSpace(statvfsFreeSpace)
{
}

QString UploadReceiver::safeFileName(const QString &remoteFileName)
{
    QString name = remoteFileName;
    const qsizetype slash =
        std::max(name.lastIndexOf(QLatin1Char('/')), name.lastIndexOf(QLatin1Char('\\')));
    if (slash >= 0)
        name = name.mid(slash + 1);
    QString clean;
    for (const QChar ch : std::as_const(name)) {
        if (ch.category() == QChar::Other_Control || ch.category() == QChar::Other_Format ||
            ch == QChar(0x2028) || ch == QChar(0x2029))
            continue;
        clean.append(ch);
    }
    // Leading dots and spaces in any order (". . x"), so nothing arrives hidden.
    while (!clean.isEmpty() && (clean.front() == QLatin1Char('.') || clean.front().isSpace()))
        clean.remove(0, 1);
    clean = clean.trimmed();
    if (clean.isEmpty())
        clean = QStringLiteral("upload");
    // Keep the extension when shortening to the file system's 255-byte limit
    // (room is left for a " (n)" suffix).
    while (clean.toUtf8().size() > 240) {
        const qsizetype dot = clean.lastIndexOf(QLatin1Char('.'));
        const qsizetype cut = dot > 0 && clean.size() - dot < 20 ? dot - 1 : clean.size() - 1;
        clean.remove(cut, 1);
    }
    return clean;
}

QString UploadReceiver::numberedName(const QString &fileName, int n)
{
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0)
        return QStringLiteral("%1 (%2)").arg(fileName).arg(n);
    return QStringLiteral("%1 (%2)%3").arg(fileName.left(dot)).arg(n).arg(fileName.mid(dot));
}

UploadReceiver::Decision UploadReceiver::begin(const QString &remoteFileName, qint64 size)
{
    Decision decision;
    if (size < 0) {
        decision.refusal = QStringLiteral("Invalid file size");
        return decision;
    }
    if (size > m_maxFileSize) {
        decision.refusal =
            QStringLiteral("The file is too large (%1; the limit is %2)")
                .arg(formatBytes(quint64(size)), formatBytes(quint64(m_maxFileSize)));
        return decision;
    }
    // A folder the agent makes is for the user alone; one the user made keeps its mode.
    if (!PrivateFiles::makeFolder(m_folder)) {
        decision.refusal = QStringLiteral("The uploads folder %1 cannot be created").arg(m_folder);
        return decision;
    }
    const std::optional<quint64> free = m_freeSpace(m_folder);
    if (!free) {
        decision.refusal =
            QStringLiteral("The free space of the uploads folder cannot be determined");
        return decision;
    }
    if (*free < quint64(size) + kFreeSpaceMargin) {
        decision.refusal = QStringLiteral("Not enough disk space for the file (%1 needed, %2 free)")
                               .arg(formatBytes(quint64(size)), formatBytes(*free));
        return decision;
    }
    QByteArray pattern = QFile::encodeName(m_folder + QStringLiteral("/.telvane-upload-XXXXXX"));
    const int fd = mkostemp(pattern.data(), O_CLOEXEC);
    if (fd < 0) {
        decision.refusal = QStringLiteral("The file cannot be stored: %1")
                               .arg(QString::fromLocal8Bit(strerror(errno)));
        return decision;
    }
    decision.file = std::make_unique<UploadFile>(m_folder, safeFileName(remoteFileName),
                                                 QFile::decodeName(pattern), fd, size);
    return decision;
}
