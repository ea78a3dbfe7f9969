// Supervision passes, the consumption of the automation queue and the waits for a
// session, with a fake session manager and a fake clock.

#include "FakeZEKTManager.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/PendingActionKeys.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "state/SupervisionController.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

class SupervisionTest : public QObject {
    Q_OBJECT

    std::unique_ptr<AppState> m_state;
    FakeZEKTManager *m_manager = nullptr;
    QDateTime m_now = QDateTime(QDate(2026, 1, 5), QTime(9, 0), Qt::UTC);
    RemoteComputer m_alpha, m_beta;

    void advance(double seconds) { m_now = m_now.addMSecs(qint64(seconds * 1000)); }

    void queue(const char *key, const QVariant &value)
    {
        const auto suite = SettingsFiles::openSharedSuite();
        suite->setValue(QLatin1String(key), value);
        suite->sync();
    }
    QVariant queued(const char *key) { return SettingsFiles::openSharedSuite()->value(key); }

    // Runs one read of the queue to its end, including the hop back to this thread.
    void processQueue()
    {
        m_state->processPendingActions();
        m_state->waitForPendingWrites();
        QCoreApplication::processEvents();
    }

    int logLinesContaining(const QString &text)
    {
        QCoreApplication::processEvents();
        return int(std::count_if(LogManager::shared().logs().begin(),
                                 LogManager::shared().logs().end(),
                                 [&](const QString &line) { return line.contains(text); }));
    }

private Q_SLOTS:
    void init()
    {
        const auto suite = SettingsFiles::openSharedSuite();
        suite->clear();
        suite->sync();
        Preferences::shared().setBoolValue(PreferenceKeys::supervisionAutoConnectAll, false);
        LogManager::shared().clearLogs();
        auto manager = std::make_unique<FakeZEKTManager>();
        m_manager = manager.get();
        m_state = std::make_unique<AppState>(std::move(manager));
        m_state->setClockForTesting([this] { return m_now; });
        m_state->setConnectionPollIntervalForTesting(1);
        // An outcome stays up, so no poll can miss it on a busy machine.
        m_state->setUploadDisplayDurationsForTesting(60000, 60000);
        m_alpha = RemoteComputer{};
        m_alpha.name = QStringLiteral("Alpha");
        m_alpha.host = QStringLiteral("a");
        m_beta = RemoteComputer{};
        m_beta.host = QStringLiteral("beta.local");
        m_state->addComputer(m_alpha);
        m_state->addComputer(m_beta);
        // The state reads the queue once when it starts; let that read finish, or it could
        // take half of what a test queues and split it over two passes.
        processQueue();
    }

    void cleanup() { m_state.reset(); }

    void passSelectsOnlyDisconnectedComputersWithOneTimestamp()
    {
        RemoteComputer gamma;
        gamma.host = QStringLiteral("gamma");
        m_state->addComputer(gamma);
        m_state->updateConnectionStatus(m_alpha.id, true);
        m_state->updateConnectingStatus(m_beta.id, true);
        m_state->autoConnectDisconnectedComputers(120);
        QCOMPARE(m_manager->calls, QStringList{"connect gamma"});
        QCOMPARE(logLinesContaining("Supervision: connecting to 1 disconnected computer(s)"), 1);

        // Both come back disconnected: one pass, one timestamp for both.
        m_state->updateConnectionStatus(m_beta.id, false, QStringLiteral("refused"));
        m_state->updateConnectionStatus(m_alpha.id, false);
        advance(120);
        m_state->setClockForTesting([this] { return m_now = m_now.addMSecs(7); });
        m_state->autoConnectDisconnectedComputers(120);
        QCOMPARE(m_manager->calls.mid(1), (QStringList{"connect Alpha", "connect beta.local"}));
        QCOMPARE(m_state->lastAutoConnectAttempts().value(m_alpha.id),
                 m_state->lastAutoConnectAttempts().value(m_beta.id));
    }

    void retryIntervalIsInclusive()
    {
        m_state->removeComputer(m_beta.id);
        m_state->autoConnectDisconnectedComputers(120);
        const QDateTime first = m_now;
        m_state->updateConnectionStatus(m_alpha.id, false, QStringLiteral("refused"));
        advance(60);
        m_state->autoConnectDisconnectedComputers(120);
        advance(59.999);
        QVERIFY(!m_state->shouldAutoConnect(*m_state->computer(m_alpha.id), m_now, 120));
        m_state->autoConnectDisconnectedComputers(120);
        QCOMPARE(m_manager->calls.size(), 1);
        QCOMPARE(logLinesContaining("Supervision:"), 1); // a pass that selects none is silent
        QCOMPARE(m_state->lastAutoConnectAttempts().value(m_alpha.id), first);
        advance(0.001);
        m_state->autoConnectDisconnectedComputers(120);
        QCOMPARE(m_manager->calls.size(), 2);
    }

    void controllerPassesOnlyWhileTheSettingIsOn()
    {
        {
            SupervisionController controller(*m_state, Preferences::shared(), 2, 120);
            QTest::qWait(30);
            controller.mainViewAppeared();
            m_state->addComputer(RemoteComputer{});
            QTest::qWait(10);
            QVERIFY(m_manager->calls.isEmpty());
            QVERIFY(m_state->lastAutoConnectAttempts().isEmpty());
        }
        SupervisionController controller(*m_state, Preferences::shared(), 3600000, 120);
        Preferences::shared().setBoolValue(PreferenceKeys::supervisionAutoConnectAll, true);
        QTRY_COMPARE(m_manager->calls.size(), 3); // switching on asks at once
        QCOMPARE(logLinesContaining("Supervision:"), 1);
        // A list change asks again; the new computer is the only one selected.
        m_state->addComputer(RemoteComputer{});
        QTRY_COMPARE(m_manager->calls.size(), 4);
    }

    void queueIsConsumedInOrderAndOnlyOnce()
    {
        queue(PendingActionKeys::disconnection, UuidText::format(m_alpha.id));
        queue(PendingActionKeys::connection, UuidText::format(m_alpha.id).toLower());
        queue(PendingActionKeys::stopRemoteControl, UuidText::format(QUuid::createUuid()));
        processQueue();
        QCOMPARE(m_manager->calls, (QStringList{"connect Alpha", "disconnect Alpha"}));
        QVERIFY(!queued(PendingActionKeys::connection).isValid());
        QVERIFY(!queued(PendingActionKeys::stopRemoteControl).isValid()); // unknown: dropped
        processQueue();
        QCOMPARE(m_manager->calls.size(), 2);
    }

    void malformedEntriesStayAndAreIgnored()
    {
        const QVariantMap noId = {{"fileURL", "/tmp/x"}, {"fileName", "x"}};
        queue(PendingActionKeys::connection, "not-a-uuid");
        queue(PendingActionKeys::disconnection, QStringList{UuidText::format(m_alpha.id)});
        queue(PendingActionKeys::fileUpload, noId);
        queue(PendingActionKeys::remoteControl, 42);
        processQueue();
        processQueue();
        QVERIFY(m_manager->calls.isEmpty());
        QCOMPARE(queued(PendingActionKeys::connection).toString(), QStringLiteral("not-a-uuid"));
        QVERIFY(queued(PendingActionKeys::disconnection).isValid());
        QCOMPARE(queued(PendingActionKeys::fileUpload).toMap(), noId);
        QVERIFY(queued(PendingActionKeys::remoteControl).isValid());
    }

    void queuedRemoteControlSelectsConnectsThenStreams()
    {
        queue(PendingActionKeys::remoteControl, UuidText::format(m_beta.id));
        processQueue();
        QCOMPARE(m_state->selectedItem(), NavigationItem::computer(m_beta.id));
        QCOMPARE(m_manager->calls, QStringList{"connect beta.local"});
        QTest::qWait(20);
        m_state->updateConnectionStatus(m_beta.id, true);
        QTRY_COMPARE(m_manager->calls.last(), QStringLiteral("stream beta.local at 5"));
    }

    void waitEndsEarlyWhenTheAttemptFails()
    {
        // An error left from an earlier attempt must not end the wait: the new attempt
        // marks the computer connecting first.
        m_state->updateConnectionStatus(m_alpha.id, false, QStringLiteral("old error"));
        queue(PendingActionKeys::remoteControl, UuidText::format(m_alpha.id));
        processQueue();
        QTest::qWait(20);
        QCOMPARE(logLinesContaining("Timed out"), 0);
        m_state->updateConnectionStatus(m_alpha.id, false, QStringLiteral("refused"));
        // The fake clock stands still: only the error can end the wait.
        QTRY_COMPARE(
            logLinesContaining("[ERROR] Timed out waiting for connection before starting remote "
                               "control for Alpha"),
            1);
        QCOMPARE(m_manager->calls, QStringList{"connect Alpha"});
    }

    void waitRunsToItsDeadline()
    {
        std::optional<bool> outcome;
        m_state->waitForConnection(m_alpha.id, 60, [&](bool value) { outcome = value; });
        m_state->removeComputer(m_alpha.id);
        QTest::qWait(20);
        QVERIFY(!outcome);
        advance(60);
        QTRY_COMPARE(outcome, std::optional<bool>(false));
    }

    void queuedUploadSendsTheStagedFileOrReportsAndKeepsIt()
    {
        QTemporaryDir folder;
        const QString staged = folder.filePath("appintents_upload_X");
        QFile(staged).open(QIODevice::WriteOnly);
        queue(PendingActionKeys::fileUpload,
              QVariantMap{{"fileURL", staged}, {"computerId", UuidText::format(m_alpha.id)}});
        processQueue();
        m_state->updateConnectionStatus(m_alpha.id, true);
        QTRY_COMPARE(m_manager->calls.last(),
                     "send Alpha " + staged + " as appintents_upload_X delete=1");

        m_state->updateConnectionStatus(m_alpha.id, false);
        queue(PendingActionKeys::fileUpload,
              QVariantMap{{"fileURL", staged},
                          {"fileName", "report.pdf"},
                          {"computerId", UuidText::format(m_alpha.id)}});
        QSignalSpy changes(m_state.get(), &AppState::fileTransferChanged);
        processQueue();
        advance(61);
        QTRY_COMPARE(m_state->fileTransferStatus(),
                     QStringLiteral("Unable to connect to Alpha for file upload"));
        QVERIFY(!m_state->isFileTransferInProgress());
        QCOMPARE(changes.size(), 1); // no beginFileTransfer
        QVERIFY(QFile::exists(staged));
        QCOMPARE(m_manager->calls.size(), 3);
    }
};

QTEST_GUILESS_MAIN(SupervisionTest)
#include "SupervisionTest.moc"
