// What the main window shows, without a window: log rows split for display, the log model
// following the log step by step, where a stored window opens, and the window's selection
// kept in step with the store's.
#include "FakeZEKTManager.h"
#include "model/LogManager.h"
#include "platform/SettingsFiles.h"
#include "presentation/LogEntryRow.h"
#include "presentation/LogListModel.h"
#include "presentation/WindowPlacement.h"
#include "state/AppState.h"
#include "state/MainWindowState.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

class MainWindowContentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void logRowsSplitAtTheFirstTwoBrackets_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("category");
        QTest::addColumn<QString>("message");
        QTest::newRow("warning") << "[10:01:02 AM] [WARN] Disk low"
                                 << "10:01:02 AM"
                                 << "WARN"
                                 << "Disk low";
        QTest::newRow("no brackets") << "plain text"
                                     << ""
                                     << "INFO"
                                     << "plain text";
        QTest::newRow("one bracket") << "[10:01] half"
                                     << ""
                                     << "INFO"
                                     << "[10:01] half";
        QTest::newRow("bracket in message") << "[1:02:03] [ERROR] a ] b ]"
                                            << "1:02:03"
                                            << "ERROR"
                                            << "a ] b ]";
        QTest::newRow("empty pieces") << "]]"
                                      << ""
                                      << ""
                                      << "";
        QTest::newRow("blanks trimmed") << " [[ 9:00 [ ] [ [UI] ] msg \n"
                                        << "9:00"
                                        << "UI"
                                        << "] msg";
        QTest::newRow("empty category") << "[9:00] [] plain"
                                        << "9:00"
                                        << ""
                                        << "plain";
    }

    void logRowsSplitAtTheFirstTwoBrackets()
    {
        QFETCH(QString, entry);
        const LogEntryRow row = LogEntryRow::parse(entry);
        QTEST(row.time, "time");
        QTEST(row.category, "category");
        QTEST(row.message, "message");
    }

    void categoriesAreColouredExactly()
    {
        QCOMPARE(LogEntryRow::categoryTone(QStringLiteral("ERROR")), Tone::red);
        QCOMPARE(LogEntryRow::categoryTone(QStringLiteral("WARN")), Tone::orange);
        for (const char *other : {"error", "Warn", "INFO", "CONNECT", ""})
            QCOMPARE(LogEntryRow::categoryTone(QLatin1String(other)), Tone::secondary);
    }

    void logModelInsertsAndRemovesRowsWithoutReset()
    {
        LogManager &log = LogManager::shared();
        log.clearLogs();
        QTRY_VERIFY(log.logs().isEmpty());
        LogListModel model(log);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QCOMPARE(model.joinedText(), QString());

        // Gathered while the log streams: entries dropped before they were shown never
        // reach the view, and the rest arrive in a few insertions.
        for (int i = 1; i <= LogManager::maxLogs + 3; ++i)
            log.log(QStringLiteral("entry %1 ] kept").arg(i), QStringLiteral("UI"));
        QTRY_COMPARE(model.rowCount(), LogManager::maxLogs);
        QCOMPARE(model.index(0).data(LogListModel::MessageRole).toString(),
                 QStringLiteral("entry 4 ] kept"));
        QVERIFY(inserted.size() < 100);
        // Then one more drops one shown row.
        const qsizetype removals = removed.size();
        log.log(QStringLiteral("last"), QStringLiteral("UI"));
        QTRY_COMPARE(removed.size(), removals + 1);
        QCOMPARE(model.rowCount(), LogManager::maxLogs);
        QCOMPARE(model.index(0).data(LogListModel::MessageRole).toString(),
                 QStringLiteral("entry 5 ] kept"));
        QCOMPARE(model.index(0).data().toString(), log.logs().first());
        QCOMPARE(model.joinedText(), log.logs().join(QLatin1Char('\n')));
        QVERIFY(!model.joinedText().endsWith(QLatin1Char('\n')));

        log.clearLogs();
        QTRY_COMPARE(model.rowCount(), 0);
        QCOMPARE(resets.size(), 0);
    }

    void storedWindowsOpenOnAVisibleScreen_data()
    {
        QTest::addColumn<QRect>("stored");
        QTest::addColumn<QRect>("expected");
        QTest::newRow("on screen") << QRect(100, 100, 1000, 700) << QRect(100, 100, 1000, 700);
        QTest::newRow("on the second screen")
            << QRect(2000, 100, 1000, 700) << QRect(2000, 100, 1000, 700);
        QTest::newRow("screen gone") << QRect(5000, 100, 1000, 700) << QRect(460, 190, 1000, 700);
        QTest::newRow("title bar above")
            << QRect(100, -600, 1000, 700) << QRect(460, 190, 1000, 700);
        QTest::newRow("barely showing")
            << QRect(1850, 1050, 1000, 700) << QRect(460, 190, 1000, 700);
        QTest::newRow("larger than the screen")
            << QRect(-4000, 0, 3000, 2000) << QRect(0, 0, 1920, 1080);
    }

    void storedWindowsOpenOnAVisibleScreen()
    {
        QFETCH(QRect, stored);
        const QList<QRect> screens = {QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)};
        QTEST(WindowPlacement::onVisibleScreen(stored, screens, screens.first(), QSize(800, 600)),
              "expected");
        // A screen smaller than the minimum keeps the minimum, title bar on the screen.
        QCOMPARE(WindowPlacement::onVisibleScreen(QRect(9000, 0, 1000, 700),
                                                  {QRect(0, 0, 640, 480)}, QRect(0, 0, 640, 480),
                                                  QSize(800, 600)),
                 QRect(0, 0, 800, 600));
    }

    void selectionFollowsTheStoreAndTheList()
    {
        QFile::remove(SettingsFiles::sharedSuitePath());
        AppState state(std::make_unique<FakeZEKTManager>());
        RemoteComputer alpha, beta;
        alpha.host = QStringLiteral("alpha.local");
        beta.host = QStringLiteral("beta.local");
        state.addComputer(alpha);
        state.addComputer(beta);
        state.setSelectedItem(NavigationItem::computer(beta.id));

        MainWindowState window(state);
        QVERIFY(!window.selectedItem()); // none until it appears
        QSignalSpy ready(&window, &MainWindowState::isAppReadyChanged);
        QSignalSpy appeared(&window, &MainWindowState::appeared);
        window.appear();
        window.appear();
        QCOMPARE(appeared.size(), 1);
        QCOMPARE(*window.selectedItem(), NavigationItem::computer(beta.id));
        QCOMPARE(window.currentComputerSnapshot().id, beta.id);
        QVERIFY(!window.isAppReady());
        QTRY_VERIFY(window.isAppReady());
        QCOMPARE(ready.size(), 1);

        // A change of the record follows; a selection from elsewhere is taken.
        RemoteComputer renamed = beta;
        renamed.name = QStringLiteral("Beta");
        state.updateComputer(renamed);
        QCOMPARE(window.currentComputer()->name, QStringLiteral("Beta"));
        state.setSelectedItem(NavigationItem::computer(alpha.id));
        QCOMPARE(window.currentComputerSnapshot().id, alpha.id);

        // The window's own choice reaches the store; a computer not in the list is none.
        window.select(NavigationItem::computer(QUuid::createUuid()));
        QCOMPARE(state.selectedItem(), NavigationItem::dashboard());
        QVERIFY(!window.currentComputer());

        // The selected computer vanishing by any path leaves the dashboard and the empty
        // record; another vanishing changes nothing.
        window.select(NavigationItem::computer(alpha.id));
        state.setComputers({alpha});
        QCOMPARE(*window.selectedItem(), NavigationItem::computer(alpha.id));
        state.setComputers({});
        QCOMPARE(*window.selectedItem(), NavigationItem::dashboard());
        QCOMPARE(state.selectedItem(), NavigationItem::dashboard());
        QVERIFY(window.currentComputerSnapshot().id != alpha.id);
        QCOMPARE(window.currentComputerSnapshot().port, quint16(5905));
        QVERIFY(window.currentComputerSnapshot().host.isEmpty());
        state.waitForPendingWrites();
    }
};

QTEST_MAIN(MainWindowContentTest)
#include "MainWindowContentTest.moc"
