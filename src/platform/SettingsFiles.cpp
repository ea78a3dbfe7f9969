#include "SettingsFiles.h"

#include "AppIdentity.h"
#include "FileLock.h"
#include "SetAsideNotices.h"
#include "SuiteCopies.h"
#include "posix/PrivateFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <sys/stat.h>
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

// What identifies one version of a file: a replaced file has a new inode, a touched one
// a new time stamp.
struct FileVersion {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    qint64 modifiedNs = 0;
    bool operator==(const FileVersion &) const = default;
};

std::optional<FileVersion> versionOf(const QString &path)
{
    struct stat info {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return std::nullopt;
    return FileVersion{info.st_dev, info.st_ino, info.st_size,
                       qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec};
}

bool setModifiedMs(const QString &path, qint64 ms)
{
    const timespec times[2] = {{0, UTIME_OMIT}, {time_t(ms / 1000), long(ms % 1000) * 1000000}};
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0;
}

// QSettings notices another process's write only by the file's size and its time stamp
// in milliseconds, and it takes the time stamp after reading the content: a write landing
// in between leaves it with older content under the newer stamp, and it would write that
// content back. Moving the stamp on to a millisecond no process has seen, under the lock,
// makes every cache read the file again. Returns the new stamp; 0 without a file.
qint64 moveTimeStampOn(const QString &path)
{
    const auto version = versionOf(path);
    if (!version)
        return 0;
    const qint64 stamp =
        qMax(QDateTime::currentMSecsSinceEpoch(), version->modifiedNs / 1000000 + 1);
    setModifiedMs(path, stamp);
    return stamp;
}

// Runs `work` holding the suite's cross-process write lock. A writer that saves again and
// again would otherwise take the lock back before a polling waiter looks: whoever waits
// for the write lock holds the turn lock, so the last writer queues behind it.
void withWriteLock(const QString &path, const std::function<void()> &work)
{
    // Threads of this process queue on the mutex rather than poll the file locks.
    static std::mutex threads;
    const std::lock_guard threadLock(threads);
    const QDeadlineTimer deadline(10000);
    FileLock turn(path + QStringLiteral(".turn"), deadline);
    const FileLock write(path + QStringLiteral(".writer"), deadline);
    turn.release();
    // Without the lock (a writer hung for the whole wait) the work still happens: losing
    // a request would be worse.
    work();
}

// Runs a read of the suite (QSettings opening it or syncing) so that its cache never holds
// older content under a newer time stamp: when the file changed during the read, the
// stamp is moved on under the lock and the file read again.
void readConsistently(const QString &path, const std::function<void()> &read,
                      const std::function<void()> &readAgain)
{
    const auto before = versionOf(path);
    read();
    if (versionOf(path) == before)
        return;
    withWriteLock(path, [&] {
        moveTimeStampOn(path);
        readAgain();
    });
}

} // namespace

bool makePrivateFolder(const QString &path)
{
    return PrivateFiles::makeFolder(path, path);
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
    std::unique_ptr<QSettings> suite;
    readConsistently(
        path, [&] { suite = openSuiteAt(path); }, [&] { suite->sync(); });
    if (suite->status() == QSettings::FormatError) {
        // QSettings would refuse every write: keep the file aside, never delete it, and say
        // where it went.
        suite.reset();
        const QString aside = SuiteCopies::moveAside(path, QLatin1String(SuiteCopies::unparseable));
        suite = openSuiteAt(path);
        if (!aside.isEmpty())
            SetAsideNotices::shared().report(
                SetAsideCopy{SetAsideCopy::Reason::unparseableFile, path, aside});
    }
    return suite;
}

void syncDurably(QSettings &settings)
{
    const QFileInfo info(settings.fileName());
    // QSettings would make a missing folder with the umask's mode.
    makePrivateFolder(info.absolutePath());
    settings.sync();
    if (info.exists())
        PrivateFiles::restrictFile(info.absoluteFilePath());
    fsyncPath(info.absoluteFilePath());
    fsyncPath(info.absolutePath());
}

void syncForReading(QSettings &settings)
{
    const QString path = settings.fileName();
    readConsistently(
        path, [&] { settings.sync(); }, [&] { settings.sync(); });
}

void writeSynchronized(QSettings &settings, const std::function<void(QSettings &)> &change)
{
    const QString path = settings.fileName();
    withWriteLock(path, [&] {
        const qint64 readStamp = moveTimeStampOn(path);
        settings.sync();
        change(settings);
        syncDurably(settings);
        // The new content must carry a later stamp than the one just read, even when
        // written within the same millisecond.
        if (const auto written = versionOf(path);
            written && written->modifiedNs / 1000000 <= readStamp)
            setModifiedMs(path, readStamp + 1);
    });
}

} // namespace SettingsFiles
