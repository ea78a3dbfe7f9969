// Writes of the shared suite when another process's write is invisible to QSettings's
// cache: same size, same millisecond time stamp.

#include "platform/SettingsFiles.h"
#include "TestFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QtTest>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

void setModified(const QString &path, const timespec &when)
{
    const timespec times[2] = {{0, UTIME_OMIT}, when};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

timespec modified(const QString &path)
{
    struct stat info {};
    ::stat(QFile::encodeName(path).constData(), &info);
    return info.st_mtim;
}

} // namespace

class SettingsFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writeKeepsAnotherWriteThatLooksUnchanged()
    {
        const auto suite = SettingsFiles::openSharedSuite();
        QVERIFY(suite);
        const QString path = suite->fileName();
        SettingsFiles::writeSynchronized(*suite, [](QSettings &settings) {
            settings.setValue(QStringLiteral("pendingConnection"), QStringLiteral("AAAA"));
        });
        const timespec cachedStamp = modified(path);

        // Another process replaces the id with one of the same length, and the file ends
        // up with the time stamp this process has cached.
        QByteArray text = readFile(path);
        QVERIFY(text.contains("AAAA"));
        writeFile(path, text.replace("AAAA", "BBBB"));
        setModified(path, cachedStamp);

        SettingsFiles::writeSynchronized(*suite, [](QSettings &settings) {
            QCOMPARE(settings.value(QStringLiteral("pendingConnection")).toString(),
                     QStringLiteral("BBBB"));
            settings.setValue(QStringLiteral("pendingDisconnection"), QStringLiteral("CCCC"));
        });
        text = readFile(path);
        QVERIFY2(text.contains("pendingConnection=BBBB"), text.constData());
        QVERIFY(text.contains("pendingDisconnection=CCCC"));

        // Each write leaves a later stamp than the version it read, so the next reader's
        // cache cannot match it by chance.
        const timespec after = modified(path);
        QVERIFY(after.tv_sec * 1000 + after.tv_nsec / 1000000 >
                cachedStamp.tv_sec * 1000 + cachedStamp.tv_nsec / 1000000);
    }
};

QTEST_GUILESS_MAIN(SettingsFilesTest)
#include "SettingsFilesTest.moc"
