#include "PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <sys/stat.h>

namespace PrivateFiles {
namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

std::optional<mode_t> modeOf(const QByteArray &path)
{
    struct stat info {};
    if (::stat(path.constData(), &info) != 0)
        return std::nullopt;
    return info.st_mode;
}

} // namespace

bool makeFolder(const QString &path, const QString &ownFrom)
{
    const QString folder = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    const QString own =
        ownFrom.isEmpty() ? QString() : QDir::cleanPath(QFileInfo(ownFrom).absoluteFilePath());
    // From the top down, so every folder made is 0700 from the start.
    const QStringList parts = folder.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QString current;
    for (const QString &part : parts) {
        current += QLatin1Char('/') + part;
        const QByteArray encoded = QFile::encodeName(current);
        const std::optional<mode_t> mode = modeOf(encoded);
        const bool isOwn =
            !own.isEmpty() && (current == own || current.startsWith(own + QLatin1Char('/')));
        if (!mode) {
            if (::mkdir(encoded.constData(), folderMode) != 0 && errno != EEXIST)
                return false;
            ::chmod(encoded.constData(), folderMode); // the umask may have taken bits
        } else if (isOwn && S_ISDIR(*mode) && (*mode & 07777) != folderMode) {
            ::chmod(encoded.constData(), folderMode);
        }
    }
    return QFileInfo(folder).isDir();
}

bool restrictFile(const QString &path)
{
    const QByteArray encoded = QFile::encodeName(path);
    const std::optional<mode_t> mode = modeOf(encoded);
    if (!mode)
        return false;
    return (*mode & 07777) == fileMode || ::chmod(encoded.constData(), fileMode) == 0;
}

std::optional<QString> write(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        file.write(data) != data.size() || !file.commit())
        return file.errorString();
    return std::nullopt;
}

} // namespace PrivateFiles
