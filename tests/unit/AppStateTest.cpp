#include "state/AppState.h"
#include "model/ComputerJson.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/AppPaths.h"
#include "platform/SettingsFiles.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTest>

namespace {

const QString key = QStringLiteral("remoteComputers");

RemoteComputer makeComputer(const QString &name)
{
    RemoteComputer c;
    c.name = name;
    c.host = name.toLower() + QStringLiteral(".local");
    return c;
}

QByteArray storedBlob()
{
    auto suite = SettingsFiles::openSharedSuite();
    suite->sync();
    return suite->value(key).toByteArray();
}

void storeBlob(QSettings &settings, const QByteArray &blob)
{
    settings.setValue(key, blob);
    settings.sync();
}

QStringList messagesWith(const QString &category)
{
    QStringList out;
    for (const QString &entry : LogManager::shared().logs()) {
        const int first = entry.indexOf(QLatin1Char(']'));
        const int second = entry.indexOf(QLatin1Char(']'), first + 1);
        if (entry.mid(first + 3, second - first - 3) == category)
            out << entry.mid(second + 2);
    }
    return out;
}

void settle()
{
    // Let queued log appends and main-thread hops run.
    QTest::qWait(30);
}

void writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(data);
}

} // namespace

class AppStateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        for (const QString &path :
             {SettingsFiles::sharedSuitePath(), SettingsFiles::openStandard()->fileName()})
            QFile::remove(path);
        QDir(AppPaths::thumbnailsDirectory()).removeRecursively();
        LogManager::shared().clearLogs();
        settle();
    }

    void saveStripsRunTimeStateAndKeepsHistory()
    {
        RemoteComputer c = makeComputer(QStringLiteral("Studio"));
        c.isConnected = true;
        c.isConnecting = true;
        c.lastError = QStringLiteral("boom");
        c.thumbnailImage = QByteArray("jpeg");
        c.lastConnected = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
        c.systemStats = SystemStats{};
        c.systemStats->osVersion = QStringLiteral("12");
        {
            AppState state;
            state.addComputer(c);
            state.waitForPendingWrites();
            const auto stored = ComputerJson::decodeList(storedBlob());
            QVERIFY(stored && stored->size() == 1);
            QVERIFY(!stored->at(0).isConnected && !stored->at(0).isConnecting);
            QVERIFY(!stored->at(0).lastError && !stored->at(0).thumbnailImage);
            // The list holds passwords: nobody but the user may read it.
            const QFileInfo suite(SettingsFiles::sharedSuitePath());
            const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup |
                                QFile::WriteOther | QFile::ExeGroup | QFile::ExeOther;
            QCOMPARE(suite.permissions() & others, QFile::Permissions());
            QCOMPARE(QFileInfo(suite.absolutePath()).permissions() & others, QFile::Permissions());
        }
        AppState restarted;
        QCOMPARE(restarted.computers().size(), 1);
        const RemoteComputer &loaded = restarted.computers().first();
        QCOMPARE(loaded.id, c.id);
        QCOMPARE(loaded.lastConnected, c.lastConnected);
        QCOMPARE(loaded.systemStats, c.systemStats);
        QVERIFY(!loaded.isConnected && !loaded.lastError);
    }

    void migratesLegacyListOverUndecodableSharedBlob()
    {
        storeBlob(*SettingsFiles::openSharedSuite(), "{broken");
        RemoteComputer a = makeComputer(QStringLiteral("A"));
        a.isConnected = true; // migrated as read, not stripped
        storeBlob(*SettingsFiles::openStandard(),
                  ComputerJson::encodeList({a, makeComputer(QStringLiteral("B"))}));
        AppState state;
        QCOMPARE(state.computers().size(), 2);
        QVERIFY(!state.computers().first().isConnected);
        settle();
        QCOMPARE(messagesWith(QStringLiteral("PERSISTENCE")),
                 QStringList{QStringLiteral(
                     "Migrated 2 computers from legacy user defaults to the shared app group")});
        // The legacy copy is never touched.
        QVERIFY(ComputerJson::decodeList(SettingsFiles::openStandard()->value(key).toByteArray())
                    ->first()
                    .isConnected);
    }

    void emptyStoresLeaveEverythingAlone()
    {
        QVERIFY(QDir().mkpath(AppPaths::thumbnailsDirectory()));
        const QString stray = AppPaths::thumbnailsDirectory() + QStringLiteral("/stray.jpg");
        writeFile(stray, "x");
        AppState state;
        settle();
        QVERIFY(state.computers().isEmpty());
        QVERIFY(messagesWith(QStringLiteral("PERSISTENCE")).isEmpty());
        QVERIFY(QFile::exists(stray));
        QVERIFY(state.selectedItem() == NavigationItem::dashboard());
    }

    void undecodableBlobKeepsThumbnailsAndStaysStored()
    {
        storeBlob(*SettingsFiles::openSharedSuite(), "[{\"port\":1}]");
        QVERIFY(QDir().mkpath(AppPaths::thumbnailsDirectory()));
        const QString thumb = AppPaths::thumbnailsDirectory() + QLatin1Char('/') +
                              UuidText::format(QUuid::createUuid()) + QStringLiteral(".jpg");
        writeFile(thumb, "x");
        AppState state;
        state.waitForPendingWrites();
        QVERIFY(state.computers().isEmpty());
        QVERIFY(QFile::exists(thumb));
        QCOMPARE(storedBlob(), QByteArray("[{\"port\":1}]"));
        // updateComputer of an unknown id saves nothing either.
        state.updateComputer(makeComputer(QStringLiteral("X")));
        state.waitForPendingWrites();
        QCOMPARE(storedBlob(), QByteArray("[{\"port\":1}]"));
    }

    void loadsOwnThumbnailsAndSweepsOrphans()
    {
        const RemoteComputer kept = makeComputer(QStringLiteral("Kept"));
        storeBlob(*SettingsFiles::openSharedSuite(), ComputerJson::encodeList({kept}));
        const QString dir = AppPaths::thumbnailsDirectory();
        QVERIFY(QDir().mkpath(dir + QStringLiteral("/folder")));
        const QString own = dir + QLatin1Char('/') + UuidText::format(kept.id) + ".jpg";
        const QString lower = dir + QLatin1Char('/') + UuidText::format(kept.id).toLower() + ".jpg";
        const QString removed =
            dir + QLatin1Char('/') + UuidText::format(QUuid::createUuid()) + ".jpg";
        const QString other = dir + QStringLiteral("/notes.txt");
        for (const QString &path : {own, lower, removed, other})
            writeFile(path, "bytes");
        AppState state;
        QCOMPARE(state.computers().first().thumbnailImage, QByteArray("bytes"));
        QVERIFY(QFile::exists(own));
        QVERIFY(!QFile::exists(lower) && !QFile::exists(removed) && !QFile::exists(other));
        QVERIFY(!QFileInfo::exists(dir + QStringLiteral("/folder")));
    }

    void connectionStatusKeepsOrClearsTheError()
    {
        AppState state;
        const RemoteComputer c = makeComputer(QStringLiteral("Mini"));
        state.addComputer(c);
        state.updateConnectingStatus(c.id, true);
        QVERIFY(state.computers().first().isConnecting);
        state.updateConnectionStatus(c.id, false, QStringLiteral("refused"));
        QVERIFY(!state.computers().first().isConnecting);
        state.updateConnectionStatus(c.id, false);
        QCOMPARE(state.computers().first().lastError, QStringLiteral("refused"));
        state.updateConnectionStatus(c.id, true);
        QVERIFY(state.computers().first().isConnected);
        QVERIFY(!state.computers().first().lastError);
        QVERIFY(state.computers().first().lastConnected);
        state.updateConnectionStatus(QUuid::createUuid(), true); // unknown: ignored
        settle();
        QCOMPARE(messagesWith(QStringLiteral("CONNECT")),
                 (QStringList{"AppState: Updated computer Mini connecting status to true",
                              "AppState: Updated computer Mini status to false",
                              "AppState: Updated computer Mini status to false",
                              "AppState: Updated computer Mini status to true"}));
    }

    void removingAnUnknownIdStillSaves()
    {
        AppState state;
        storeBlob(*SettingsFiles::openSharedSuite(), "garbage");
        state.removeComputer(QUuid::createUuid());
        state.waitForPendingWrites();
        QCOMPARE(storedBlob(), QByteArray("[]"));
    }

    void savesLandInRequestOrder()
    {
        AppState state;
        QList<QUuid> ids;
        for (int i = 0; i < 40; ++i) {
            const RemoteComputer c = makeComputer(QStringLiteral("C%1").arg(i));
            ids << c.id;
            state.addComputer(c);
        }
        state.removeComputer(ids.first());
        state.waitForPendingWrites();
        const auto stored = ComputerJson::decodeList(storedBlob());
        QVERIFY(stored);
        QCOMPARE(stored->size(), 39);
        for (int i = 0; i < 39; ++i)
            QCOMPARE(stored->at(i).id, ids.at(i + 1));
    }

    void storeThumbnailWritesFileThenRecord()
    {
        AppState state;
        const RemoteComputer c = makeComputer(QStringLiteral("Shot"));
        state.addComputer(c);
        state.storeThumbnail(c.id, "first");
        state.storeThumbnail(c.id, "second");
        QTRY_COMPARE(state.computers().first().thumbnailImage, QByteArray("second"));
        QFile file(AppPaths::thumbnailsDirectory() + QLatin1Char('/') + UuidText::format(c.id) +
                   ".jpg");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("second"));
    }

    void garbageSettingsFileGivesAnEmptyListAndLaterSavesWork()
    {
        writeFile(SettingsFiles::sharedSuitePath(), QByteArray("\x00\xff[[[=\n\x01", 9));
        AppState state;
        QVERIFY(state.computers().isEmpty());
        state.addComputer(makeComputer(QStringLiteral("Fresh")));
        state.waitForPendingWrites();
        QCOMPARE(ComputerJson::decodeList(storedBlob())->size(), 1);
    }

    void releaseLogsDeinitialized()
    {
        {
            AppState state;
        }
        settle();
        QVERIFY(messagesWith(QStringLiteral("MEMORY"))
                    .contains(QStringLiteral("AppState deinitialized")));
    }
};

QTEST_GUILESS_MAIN(AppStateTest)
#include "AppStateTest.moc"
