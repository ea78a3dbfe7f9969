#include "SuiteCopies.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace SuiteCopies {
namespace {

QString prefixOf(const QString &path, const QString &kind)
{
    return path + QLatin1Char('.') + kind + QLatin1Char('-');
}

// A name no copy has yet: the time, and a number when two copies share a millisecond.
QString freshName(const QString &path, const QString &kind)
{
    const QString stamped = prefixOf(path, kind) + QDateTime::currentDateTimeUtc().toString(
                                                       QStringLiteral("yyyyMMdd'T'HHmmss.zzz'Z'"));
    QString name = stamped;
    for (int n = 2; QFileInfo::exists(name); ++n)
        name = stamped + QLatin1Char('-') + QString::number(n);
    return name;
}

// Copies of that kind, oldest first.
QStringList copiesOf(const QString &path, const QString &kind)
{
    const QFileInfo info(prefixOf(path, kind));
    const QDir folder = info.absoluteDir();
    QStringList copies;
    for (const QString &name :
         folder.entryList({info.fileName() + QLatin1Char('*')}, QDir::Files, QDir::Name))
        copies << folder.filePath(name);
    return copies;
}

QByteArray contentsOf(const QString &path, bool *ok)
{
    QFile file(path);
    *ok = file.open(QIODevice::ReadOnly);
    return *ok ? file.readAll() : QByteArray();
}

bool writeNew(const QString &path, const QByteArray &data)
{
    const int fd =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    bool ok = ::fchmod(fd, 0600) == 0;
    for (qsizetype done = 0; ok && done < data.size();) {
        const ssize_t n = ::write(fd, data.constData() + done, size_t(data.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        ok = n > 0;
        done += n;
    }
    ok = ::fsync(fd) == 0 && ok;
    ok = ::close(fd) == 0 && ok;
    if (!ok)
        QFile::remove(path);
    return ok;
}

} // namespace

QString moveAside(const QString &path, const QString &kind)
{
    const QString copy = freshName(path, kind);
    if (!QFile::rename(path, copy))
        return {};
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    return copy;
}

QString copyAside(const QString &path, const QString &kind, int keep)
{
    bool ok = false;
    const QByteArray data = contentsOf(path, &ok);
    if (!ok)
        return {};
    QStringList copies = copiesOf(path, kind);
    // The same bytes kept again would only push an older, different copy out.
    if (!copies.isEmpty()) {
        bool readable = false;
        if (contentsOf(copies.last(), &readable) == data && readable)
            return copies.last();
    }
    const QString copy = freshName(path, kind);
    if (!writeNew(copy, data))
        return {};
    copies << copy;
    while (copies.size() > keep)
        QFile::remove(copies.takeFirst());
    return copy;
}

} // namespace SuiteCopies
