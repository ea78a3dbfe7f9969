#include "state/AppState.h"
#include "TestFiles.h"
#include "model/ComputerJson.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/AppPaths.h"
#include "platform/SerialQueue.h"
#include "platform/SettingsFiles.h"
#include "state/ComputerListModel.h"
#include "state/ComputerListStorage.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QSettings>
#include <QSignalSpy>
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

    void statisticsReportTouchesOneRowAndSavesCoalesce()
    {
        AppState state;
        QList<RemoteComputer> fleet;
        for (int i = 0; i < 200; ++i)
            fleet << makeComputer(QStringLiteral("Fleet%1").arg(i));
        state.setComputers(fleet);
        ComputerListModel model(state);
        state.waitForPendingWrites();
        const int writesBefore = state.storageForTesting().listWriteCount();

        // Hold the persistence queue, so the save asked for below stays pending.
        QSemaphore release;
        state.storageForTesting().persistenceQueueForTesting().enqueue([&] { release.acquire(); });
        state.saveComputers();

        QSignalSpy rowChanges(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy shape(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy computerChanges(&state, &AppState::computerChanged);
        QSignalSpy listChanges(&state, &AppState::computersChanged);
        SystemStats report;
        report.cpuUsage = 0.42;
        report.osVersion = QStringLiteral("14.1");
        state.applySystemStats(fleet.at(137).id, report);
        QCOMPARE(rowChanges.size(), 1);
        const QModelIndex top = rowChanges.first().at(0).toModelIndex();
        const QModelIndex bottom = rowChanges.first().at(1).toModelIndex();
        QCOMPARE(top.row(), 137);
        QCOMPARE(bottom.row(), 137);
        QVERIFY(rowChanges.first().at(2).value<QList<int>>().contains(
            ComputerListModel::SystemStatsRole));
        QCOMPARE(model.index(137).data(ComputerListModel::SystemStatsRole).value<SystemStats>(),
                 report);
        QCOMPARE(computerChanges.size(), 1);
        QCOMPARE(computerChanges.first().at(1).value<ComputerFields>(),
                 ComputerFields(ComputerField::systemStats));
        QCOMPARE(listChanges.size(), 1); // supervision and automation still hear of it
        QCOMPARE(shape.size() + resets.size(), 0);

        // The same report again changes nothing a view shows.
        state.applySystemStats(fleet.at(137).id, report);
        QCOMPARE(rowChanges.size(), 1);

        // A burst of reports while the save waits: one write, with the last figures.
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < fleet.size(); ++i) {
                SystemStats stats;
                stats.freeMemory = quint64(round * 1000 + i);
                state.applySystemStats(fleet.at(i).id, stats);
            }
        }
        QCOMPARE(rowChanges.size(), 1 + 3 * 200);
        release.release();
        state.waitForPendingWrites();
        QCOMPARE(state.storageForTesting().listWriteCount(), writesBefore + 1);
        const auto stored = ComputerJson::decodeList(storedBlob());
        QVERIFY(stored && stored->size() == 200);
        QCOMPARE(stored->at(137).systemStats->freeMemory, quint64(2137));
    }

    void listModelFollowsAddRemoveAndWholeLists()
    {
        AppState state;
        const RemoteComputer a = makeComputer(QStringLiteral("A"));
        const RemoteComputer b = makeComputer(QStringLiteral("B"));
        state.addComputer(a);
        ComputerListModel model(state);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        const auto names = [&model] {
            QStringList out;
            for (int row = 0; row < model.rowCount(); ++row)
                out << model.index(row).data().toString();
            return out;
        };

        state.addComputer(b);
        state.addComputer(a); // the same id twice: the list allows it
        QCOMPARE(inserted.size(), 2);
        QCOMPARE(inserted.last().at(1).toInt(), 2);
        QCOMPARE(model.row(a.id), 0);
        state.removeComputer(a.id); // every record with that id
        QCOMPARE(removed.size(), 2);
        QCOMPARE(names(), QStringList{"B"});

        // A status change names its roles; credentials have none but the record's.
        state.updateConnectingStatus(b.id, true);
        QCOMPARE(changed.last().at(2).value<QList<int>>(),
                 (QList<int>{ComputerListModel::IsConnectingRole, ComputerListModel::RecordRole}));
        RemoteComputer renamed = state.computers().first();
        renamed.password = QStringLiteral("new");
        state.updateComputer(renamed);
        QCOMPARE(changed.last().at(2).value<QList<int>>(),
                 QList<int>{ComputerListModel::RecordRole});

        // A whole list with the same rows changes rows; any other replaces them.
        const int changesBefore = int(changed.size());
        QList<RemoteComputer> same = state.computers();
        same.first().name = QStringLiteral("Bee");
        state.setComputers(same);
        QCOMPARE(changed.size(), changesBefore + 1);
        QCOMPARE(names(), QStringList{"Bee"});
        state.setComputers({makeComputer(QStringLiteral("C")), same.first()});
        QCOMPARE(names(), (QStringList{"C", "Bee"}));
        QCOMPARE(model.row(same.first().id), 1);
        state.waitForPendingWrites();
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
