#include "SettingsFiles.h"

#include "AppIdentity.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QThread>
#include <fcntl.h>
#include <mutex>
#include <unistd.h>

namespace SettingsFiles {
namespace {

std::unique_ptr<QSettings> openSuiteAt(const QString &path)
{
    return std::make_unique<QSettings>(path, QSettings::IniFormat);
}

void fsyncPath(const QString &path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

// The computer list holds passwords: its folder and file are for the user alone.
constexpr QFile::Permissions ownerOnlyFolder =
    QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr QFile::Permissions ownerOnlyFile = QFile::ReadOwner | QFile::WriteOwner;

} // namespace

bool makePrivateFolder(const QString &path)
{
    if (!QDir().mkpath(path))
        return false;
    if ((QFile::permissions(path) & ~ownerOnlyFolder) != 0)
        QFile::setPermissions(path, ownerOnlyFolder);
    return true;
}

std::unique_ptr<QSettings> openStandard()
{
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                       QLatin1String(AppIdentity::organizationName),
                                       QLatin1String(AppIdentity::applicationName));
}

QString sharedSuitePath()
{
    // Next to the standard store, named by the app group identifier.
    const QString standard = openStandard()->fileName();
    return QFileInfo(standard).absolutePath() + QLatin1Char('/') +
           QLatin1String(AppIdentity::appGroupIdentifier) + QStringLiteral(".conf");
}

std::unique_ptr<QSettings> openSharedSuite()
{
    const QString path = sharedSuitePath();
    if (!makePrivateFolder(QFileInfo(path).absolutePath()))
        return nullptr;
    auto suite = openSuiteAt(path);
    if (suite->status() == QSettings::FormatError) {
        const QString aside = path + QStringLiteral(".corrupt-") +
                              QString::number(QDateTime::currentMSecsSinceEpoch());
        suite.reset();
        QFile::rename(path, aside);
        suite = openSuiteAt(path);
    }
    return suite;
}

void syncDurably(QSettings &settings)
{
    settings.sync();
    const QFileInfo info(settings.fileName());
    if (info.exists() && (info.permissions() & ~ownerOnlyFile & 0x0fff) != 0)
        QFile::setPermissions(info.absoluteFilePath(), ownerOnlyFile);
    fsyncPath(info.absoluteFilePath());
    fsyncPath(info.absolutePath());
}

void writeSynchronized(QSettings &settings, const std::function<void(QSettings &)> &change)
{
    // The lock file keeps other processes out; QLockFile does not exclude threads of the
    // same process, the mutex does.
    static std::mutex threads;
    const std::lock_guard threadLock(threads);
    QLockFile lock(settings.fileName() + QStringLiteral(".writelock"));
    // A writer killed while holding the lock leaves the file; QLockFile takes it over
    // once that process is gone.
    lock.setStaleLockTime(10000);
    // Without the lock the write still happens: losing the request would be worse.
    lock.tryLock(10000);
    settings.sync();
    change(settings);
    syncDurably(settings);
    // Margin for file systems whose time stamps are coarser than a millisecond.
    constexpr qint64 marginMs = 10;
    const QFileInfo info(settings.fileName());
    const qint64 written = info.lastModified().toMSecsSinceEpoch();
    for (int i = 0; i < 50 && QDateTime::currentMSecsSinceEpoch() <= written + marginMs; ++i)
        QThread::msleep(1);
}

} // namespace SettingsFiles
