// What the console does with a settings file it cannot use: the copy it keeps beside the
// file, the in-app log line and the one alert at start.

#include "ScriptedAlertPresenter.h"
#include "model/ComputerJson.h"
#include "model/LogManager.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "state/SetAsideReporter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTest>
#include <sys/stat.h>

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(data);
}

// Copies beside the suite file whose name says `kind`, oldest first.
QStringList copiesOf(const QString &kind)
{
    const QFileInfo suite(SettingsFiles::sharedSuitePath());
    const QDir folder = suite.absoluteDir();
    QStringList paths;
    for (const QString &name :
         folder.entryList({suite.fileName() + QLatin1Char('.') + kind + QStringLiteral("-*")},
                          QDir::Files, QDir::Name))
        paths << folder.filePath(name);
    return paths;
}

int modeOf(const QString &path)
{
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
}

QStringList persistenceLines()
{
    return LogManager::shared().logs().filter(QStringLiteral("] [PERSISTENCE] "));
}

} // namespace

class SetAsideTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const QFileInfo suite(SettingsFiles::sharedSuitePath());
        QDir(suite.absolutePath()).removeRecursively();
        QVERIFY(SettingsFiles::makePrivateFolder(suite.absolutePath()));
        LogManager::shared().clearLogs();
        QTest::qWait(20);
    }

    void unparseableSuiteIsMovedAsideAndSaid()
    {
        // A section header cut short: QSettings refuses the whole file.
        const QByteArray garbage("[General\nremoteComputers=@ByteArray([])\n");
        writeFile(SettingsFiles::sharedSuitePath(), garbage);
        ScriptedAlertPresenter alerts;
        SetAsideReporter reporter(alerts);
        AppState state;
        QVERIFY(state.computers().isEmpty());
        state.addComputer(RemoteComputer{}); // the new file takes writes
        state.waitForPendingWrites();

        const QStringList copies = copiesOf(QStringLiteral("corrupt"));
        QCOMPARE(copies.size(), 1);
        QCOMPARE(contentsOf(copies.first()), garbage);
        QCOMPARE(modeOf(copies.first()), 0600);
        QTRY_COMPARE(alerts.shown.size(), 1);
        QVERIFY2(alerts.shown.first().text.contains(copies.first()),
                 qPrintable(alerts.shown.first().text));
        QTRY_COMPARE(persistenceLines().size(), 1);
        QVERIFY(persistenceLines().first().contains(copies.first()));

        // Once: nothing more is said for the same copy later in the run.
        QTest::qWait(50);
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(persistenceLines().size(), 1);
    }
};

QTEST_GUILESS_MAIN(SetAsideTest)
#include "SetAsideTest.moc"
