// What the console does with a settings file it cannot use: the copy it keeps beside the
// file, the in-app log line and the one alert at start.

#include "ScriptedAlertPresenter.h"
#include "TestFiles.h"
#include "automation/SharedAppState.h"
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

const QString key = QStringLiteral("remoteComputers");

// A list as another tool might write it: valid JSON, one port out of range.
void storeUndecodableList(int port)
{
    const auto suite = SettingsFiles::openSharedSuite();
    SettingsFiles::writeSynchronized(*suite, [&](QSettings &settings) {
        settings.setValue(
            key, QStringLiteral(R"([{"host":"studio.local","port":%1}])").arg(port).toUtf8());
    });
}

QStringList persistenceLines()
{
    return LogManager::shared().logs().filter(QStringLiteral("] [PERSISTENCE] "));
}

// One copy of that kind, byte for byte the original and the user's alone, named by the one
// alert shown.
void verifyOneCopyTold(const QString &kind, const QByteArray &original,
                       const ScriptedAlertPresenter &alerts, QString *copy)
{
    const QStringList copies = copiesOf(kind);
    QCOMPARE(copies.size(), 1);
    *copy = copies.first();
    QCOMPARE(readFile(*copy), original);
    QCOMPARE(modeOf(*copy), 0600);
    QTRY_COMPARE(alerts.shown.size(), 1);
    QVERIFY2(alerts.shown.first().text.contains(*copy), qPrintable(alerts.shown.first().text));
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

        QString copy;
        verifyOneCopyTold(QStringLiteral("corrupt"), garbage, alerts, &copy);
        if (QTest::currentTestFailed())
            return;
        QTRY_COMPARE(persistenceLines().size(), 1);
        QVERIFY(persistenceLines().first().contains(copy));

        // Once: nothing more is said for the same copy later in the run.
        QTest::qWait(50);
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(persistenceLines().size(), 1);
    }

    // The list loads empty and the in-app log says nothing, as before; a byte-for-byte copy
    // of the file is kept, the user is told once, and nothing is added to that list.
    void undecodableListIsKeptBeforeAnythingReplacesIt()
    {
        storeUndecodableList(70000);
        const QByteArray original = readFile(SettingsFiles::sharedSuitePath());
        ScriptedAlertPresenter alerts;
        SetAsideReporter reporter(alerts);
        AppState state;
        QVERIFY(state.computers().isEmpty());
        RemoteComputer seed;
        seed.host = QStringLiteral("127.0.0.1");
        QVERIFY(!state.addComputerIfEmpty(seed));
        state.waitForPendingWrites();
        QCOMPARE(readFile(SettingsFiles::sharedSuitePath()), original);

        QString copy;
        verifyOneCopyTold(QStringLiteral("undecodable"), original, alerts, &copy);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(persistenceLines().isEmpty());

        // The user's own addition replaces the list; the copy already holds what it lost.
        state.addComputer(seed);
        state.waitForPendingWrites();
        QCOMPARE(
            ComputerJson::decodeStoredList(SettingsFiles::openSharedSuite()->value(key)).size(), 1);
        QCOMPARE(copiesOf(QStringLiteral("undecodable")), QStringList{copy});
        QTest::qWait(50);
        QCOMPARE(alerts.shown.size(), 1);
    }

    // Every writer of the list keeps the copy before it replaces an undecodable one.
    void everyWriterKeepsACopyFirst_data()
    {
        QTest::addColumn<QString>("writer");
        QTest::newRow("console save") << "save";
        QTest::newRow("console migration at start") << "migration";
        QTest::newRow("telvanectl migration") << "telvanectl";
    }

    void everyWriterKeepsACopyFirst()
    {
        QFETCH(QString, writer);
        RemoteComputer legacy;
        legacy.host = QStringLiteral("legacy.local");
        const auto standard = SettingsFiles::openStandard();
        standard->setValue(key, ComputerJson::encodeList({legacy}));
        standard->sync();
        QByteArray original;
        if (writer == QLatin1String("save")) {
            AppState state; // migrates and loads a list that decodes
            state.waitForPendingWrites();
            storeUndecodableList(65536); // broken by another tool while the console runs
            original = readFile(SettingsFiles::sharedSuitePath());
            state.addComputer(legacy);
            state.waitForPendingWrites();
        } else {
            storeUndecodableList(65536);
            original = readFile(SettingsFiles::sharedSuitePath());
            if (writer == QLatin1String("migration"))
                QCOMPARE(AppState().computers().size(), 1);
            else
                QCOMPARE(SharedAppState().loadComputers().size(), 1);
        }
        const QStringList copies = copiesOf(QStringLiteral("undecodable"));
        QCOMPARE(copies.size(), 1);
        QCOMPARE(readFile(copies.first()), original);
    }

    void fiveNewestCopiesAreKept()
    {
        QList<QByteArray> originals;
        for (int run = 0; run < 7; ++run) {
            storeUndecodableList(70000 + run);
            originals << readFile(SettingsFiles::sharedSuitePath());
            AppState state;
            state.waitForPendingWrites();
        }
        const QStringList copies = copiesOf(QStringLiteral("undecodable"));
        QCOMPARE(copies.size(), 5);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(readFile(copies.at(i)), originals.at(i + 2));
    }
};

QTEST_GUILESS_MAIN(SetAsideTest)
#include "SetAsideTest.moc"
