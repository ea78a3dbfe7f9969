// Connection lifecycle, network state, message dispatch and commands of the session manager.
#include "SessionHarness.h"
#include "TestFiles.h"

#include "protocol/AuthenticationResponseMessage.h"
#include "protocol/DisconnectMessage.h"
#include "protocol/FileTransferResponseMessage.h"
#include "protocol/HeartbeatMessage.h"
#include "protocol/SystemStatsMessage.h"
#include "protocol/ZEKTCommandResultMessage.h"

#include <QTemporaryDir>
#include <QThread>
#include <cerrno>

using Clock = std::chrono::steady_clock;

class ZEKTManagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ZEKT::resetTimeoutsForTesting(); }

    void deadlineEndsTheAttemptWithItsText()
    {
        ZEKT::setTimeoutsForTesting({10.0, 5.0, 15.0});
        QCOMPARE(ZEKTManager::connectionDeadline(), 30.0);
        // Only the deadline fits in a test: 0.1 + 2 × 0 + 10 − 10 seconds.
        ZEKT::setTimeoutsForTesting({-9.9, 0.0, 15.0});
        SessionHarness h;
        h.manager->connectToComputer(h.computer);
        QTRY_VERIFY(h.record().lastError.has_value());
        QCOMPARE(*h.record().lastError, QStringLiteral("Connection timed out after 0 seconds"));
        QVERIFY(!h.record().isConnecting);
        QCOMPARE(h.fake().disconnectCount, 1);
        QVERIFY(h.manager->clients().isEmpty());
        QCOMPARE(LogLines::count("ERROR", "Connection/handshake/authentication failed to Studio: "
                                          "Connection timed out after 0 seconds"),
                 1);
        // The session's late success changes nothing.
        h.fake().complete("connect");
        h.fake().complete("authenticate");
        QTest::qWait(20);
        QVERIFY(!h.record().isConnected);
    }

    void newerConnectSupersedesTheRunningAttempt()
    {
        SessionHarness h;
        h.manager->connectToComputer(h.computer);
        QTRY_COMPARE(h.fake().callCount("connect"), 1);
        FakeZEKTClient &first = h.fake();
        h.manager->connectToComputer(h.computer);
        QCOMPARE(first.disconnectCount, 1); // cleaned up by the newer attempt
        QCOMPARE(h.manager->connectionGeneration(h.computer.id), 2u);
        QTRY_COMPARE(h.fake().callCount("connect"), 1);
        first.complete("connect");
        QTest::qWait(20);
        QCOMPARE(first.callCount("authenticate"), 0);
        QVERIFY(h.record().isConnecting);
        h.fake().complete("connect");
        QTRY_COMPARE(h.fake().callCount("authenticate"), 1);
        h.fake().complete("authenticate");
        QTRY_VERIFY(h.record().isConnected);
        QCOMPARE(LogLines::count("AUTH", "Authentication successful for Studio"), 1);
        // A late report of the replaced client leaves its successor alone.
        first.sendState(NetworkState::failed(ECONNRESET, QStringLiteral("reset")));
        first.sendMessage(std::make_shared<AuthenticationResponseMessage>(false));
        QTRY_COMPARE(LogLines::countStartingWith("Ignoring "), 2);
        QVERIFY(h.record().isConnected);
        QCOMPARE(h.manager->client(h.computer.id), h.fakes.last());

        // Two calls in one go: the first attempt never starts nor registers its client.
        SessionHarness g;
        g.manager->connectToComputer(g.computer);
        g.manager->connectToComputer(g.computer);
        QTRY_COMPARE(g.fakes.last()->callCount("connect"), 1);
        QCOMPARE(g.fakes.first()->callCount("connect"), 0);
        QCOMPARE(g.manager->client(g.computer.id), g.fakes.last());
    }

    void disconnectDuringAnAttemptWins()
    {
        SessionHarness h;
        h.manager->connectToComputer(h.computer);
        QTRY_COMPARE(h.fake().callCount("connect"), 1);
        h.manager->disconnectFromComputer(h.computer);
        QCOMPARE(h.fake().disconnectCount, 1);
        QVERIFY(h.manager->clients().isEmpty());
        QVERIFY(!h.manager->isConnecting(h.computer.id));
        h.fake().complete("connect");
        QTest::qWait(20);
        QVERIFY(!h.record().isConnected && !h.record().isConnecting);
        QCOMPARE(LogLines::countStartingWith("Connection and handshake completed"), 0);
        // The cancelled state that follows a disconnect is only noted.
        LogLines::clear();
        h.fake().sendState(NetworkState::cancelled());
        QTRY_COMPARE(LogLines::all().size(), 1);
        QCOMPARE(LogLines::all().first().message,
                 QStringLiteral("Ignoring connection state change for removed computer Studio"));
    }

    void alreadyConnectedChangesNothing()
    {
        SessionHarness h;
        QVERIFY(h.connect());
        const quint64 generation = h.manager->connectionGeneration(h.computer.id);
        LogLines::clear();
        h.manager->connectToComputer(h.computer);
        QCOMPARE(h.fakes.size(), 1);
        QCOMPARE(h.manager->connectionGeneration(h.computer.id), generation);
        QVERIFY(!h.record().isConnecting && h.record().isConnected);
        QCOMPARE(LogLines::count("CONNECT", "Already connected to Studio"), 1);
    }

    void refusedAuthentication()
    {
        SessionHarness h;
        h.manager->connectToComputer(h.computer);
        QTRY_COMPARE(h.fake().callCount("connect"), 1);
        h.fake().complete("connect");
        // The agent's negative verdict: not connected, without an error text.
        h.fake().sendMessage(std::make_shared<AuthenticationResponseMessage>(false));
        QTRY_VERIFY(!h.record().isConnecting);
        QVERIFY(!h.record().isConnected && !h.record().lastError);
        QCOMPARE(LogLines::count("ERROR", "Authentication failed for computer Studio"), 1);
        // The failing authenticate call then reports its reason.
        QTRY_COMPARE(h.fake().callCount("authenticate"), 1);
        h.fake().complete("authenticate", QStringLiteral("Invalid credentials"));
        QTRY_COMPARE(h.record().lastError.value_or(QString()),
                     QStringLiteral("Invalid credentials"));
        QVERIFY(h.manager->clients().isEmpty());
    }

    void networkDownIsCountedAndAlertedSparingly()
    {
        SessionHarness h;
        QVERIFY(h.connect());
        Clock::time_point now{};
        h.manager->setClockForTesting([&now] { return now; });
        const NetworkState down =
            NetworkState::waiting(ENETDOWN, QStringLiteral("Network is down"));
        h.presenter.script = {1, 1};
        LogLines::clear();
        for (int i = 0; i < 11; ++i)
            h.fake().sendState(down);
        QTRY_COMPARE(h.manager->networkDownErrorCount(h.computer.id), 11);
        const QString issue("Network connection issue for Studio (error #%1) - check Local "
                            "Network permission and reachability");
        QCOMPARE(LogLines::count("CONNECT", issue.arg(1)), 1);
        QCOMPARE(LogLines::count("CONNECT", issue.arg(11)), 1);
        QCOMPARE(LogLines::all().size(), 2);
        QTRY_COMPARE(h.presenter.shown.size(), 1);
        QCOMPARE(h.presenter.shown[0].title, QStringLiteral("Network Access Required"));
        QCOMPARE(h.presenter.shown[0].buttons[0], QStringLiteral("Open System Settings"));

        now += std::chrono::seconds(61);
        h.fake().sendState(down);
        QTRY_COMPARE(h.presenter.shown.size(), 2);

        h.fake().sendState(NetworkState::ready());
        h.fake().sendState(down);
        QTRY_COMPARE(LogLines::count("CONNECT", issue.arg(1)), 2);
        // Another error while waiting is an ordinary state.
        h.fake().sendState(NetworkState::waiting(ECONNREFUSED, QStringLiteral("refused")));
        QTRY_COMPARE(LogLines::count("CONNECT", "Connection state: waiting(refused) for Studio"),
                     1);
        QCOMPARE(h.manager->networkDownErrorCount(h.computer.id), 1);
        h.fake().sendState(NetworkState::failed(ECONNRESET, QStringLiteral("reset")));
        QTRY_VERIFY(h.manager->clients().isEmpty());
        QVERIFY(!h.record().isConnected);
    }

    void streamingQualityAndFailedStart()
    {
        SessionHarness h;
        QVERIFY(h.connect());
        const QList<QPair<double, float>> rates{{15, 0.5f}, {15.5, 0.4f}, {30, 0.4f}, {31, 0.3f}};
        for (const auto &[rate, quality] : rates) {
            h.manager->startRemoteControlStreaming(h.computer, rate);
            QCOMPARE(h.fake().lastArguments("startContinuousStreaming").at(1).toFloat(), quality);
        }
        QVERIFY(h.fake().complete("startContinuousStreaming"));
        QTRY_COMPARE(LogLines::count("SCREEN", "Started continuous streaming from Studio at 15 FPS "
                                               "(quality: 0.5)"),
                     1);
        QVERIFY(h.manager->isStreaming(h.computer.id));
        while (h.fake().complete("startContinuousStreaming", QStringLiteral("busy"))) {
        }
        QTRY_VERIFY(!h.manager->isStreaming(h.computer.id));

        h.manager->startRemoteControlStreaming(h.computer, 10);
        QVERIFY(!h.manager->stopRemoteControlStreamingSync(h.computer));
        QVERIFY(!h.manager->isStreaming(h.computer.id));
        h.manager->disconnectFromComputer(h.computer);
        const std::optional<Error> error = h.manager->stopRemoteControlStreamingSync(h.computer);
        QVERIFY(error);
        QCOMPARE(error->domain, QStringLiteral("ZEKTManager"));
        QCOMPARE(error->description, QStringLiteral("No active client for computer"));
    }

    void previewFlagLifecycle()
    {
        SessionHarness h;
        QVERIFY(h.connect());
        h.manager->requestManualPreview(h.computer);
        QVERIFY(h.manager->isManualPreviewRequested(h.computer.id));
        h.fake().complete("requestScreenCapture", QStringLiteral("no display"));
        QTRY_VERIFY(!h.manager->isManualPreviewRequested(h.computer.id));
        h.manager->requestManualPreview(h.computer);
        h.fake().complete("requestScreenCapture");
        QTest::qWait(20);
        QVERIFY(h.manager->isManualPreviewRequested(h.computer.id));
        // A disconnect message ends the session and the pending preview.
        h.fake().sendMessage(std::make_shared<DisconnectMessage>(QStringLiteral("bye")));
        QTRY_VERIFY(h.manager->clients().isEmpty());
        QVERIFY(!h.manager->isManualPreviewRequested(h.computer.id));
    }

    void messagesAndStatistics()
    {
        SessionHarness h;
        QVERIFY(h.connect());
        auto stats = std::make_shared<SystemStatsMessage>();
        stats->cpuUsage = 12.5;
        stats->uptimeSeconds = 42;
        h.fake().sendMessage(stats);
        QTRY_VERIFY(h.record().systemStats.has_value());
        const SystemStats s = *h.record().systemStats;
        // A kind the manager does not act on is named in the log.
        h.fake().sendMessage(std::make_shared<ZEKTCommandResultMessage>(7, true));
        QTRY_COMPARE(
            LogLines::count("WARN", "Unhandled message type: ZEKTCommandResultMessage from Studio"),
            1);
        QCOMPARE(s.cpuUsage, 12.5);
        QCOMPARE(s.activeProcess, QString()); // present, even when empty
        QCOMPARE(s.uptimeSeconds, 42u);
        QVERIFY(!s.diskVolumes && !s.agentVersion);

        // A deleted record whose client is still registered.
        h.state->removeComputer(h.computer.id);
        LogLines::clear();
        h.fake().sendMessage(std::make_shared<HeartbeatMessage>());
        h.fake().sendMessage(stats);
        QTRY_COMPARE(LogLines::count("HEARTBEAT", "Heartbeat received from Unknown Computer"), 1);
        QCOMPARE(LogLines::all().size(), 1);
    }

    void fileTransfer()
    {
        SessionHarness h;
        h.state->setUploadDisplayDurationsForTesting(10000, 10000);
        h.manager->sendFileTransfer(h.computer, "/tmp/none", std::nullopt, false);
        QTRY_COMPARE(h.state->fileTransferStatus(), QStringLiteral("Not connected to Studio"));
        QVERIFY(h.connect());

        QTemporaryDir dir;
        for (const bool succeed : {true, false}) {
            const QString path = writeFile(dir.filePath("staged.bin"), {});
            h.manager->sendFileTransfer(h.computer, path, std::nullopt, true);
            QCOMPARE(h.fake().lastArguments("sendFileTransfer").at(1).toString(), "staged.bin");
            // Progress arrives on a library thread.
            auto progress = h.fake().calls.last().progress;
            QThread *sender = QThread::create([progress] { progress(0.5); });
            sender->start();
            sender->wait();
            delete sender;
            QTRY_COMPARE(h.state->fileTransferProgress(), 0.45);
            QCOMPARE(h.state->fileTransferStatus(), QStringLiteral("Sending file..."));
            // The start-up sweep of staged files spares it meanwhile.
            QCOMPARE(h.manager->uploadsUnderWay(), QSet<QString>{path});
            h.fake().complete("sendFileTransfer",
                              succeed ? std::nullopt : std::optional<QString>("link lost"));
            if (succeed) {
                QTRY_COMPARE(h.state->fileTransferStatus(), "Waiting for server confirmation...");
                QCOMPARE(h.state->fileTransferProgress(), 0.9);
                h.fake().sendMessage(std::make_shared<FileTransferResponseMessage>(
                    false, QStringLiteral("Disk full")));
                QTRY_COMPARE(h.state->fileTransferStatus(), "Upload failed: Disk full");
            } else {
                QTRY_COMPARE(h.state->fileTransferStatus(), "Upload failed: link lost");
            }
            QVERIFY(!QFile::exists(path));
            QVERIFY(h.manager->uploadsUnderWay().isEmpty());
        }
    }

    void callbacksAfterTheManagerIsGoneAreDropped()
    {
        auto h = std::make_unique<SessionHarness>();
        QVERIFY(h->connect());
        std::shared_ptr<FakeZEKTClient> client = h->fakes.last();
        h.reset();
        client->sendState(NetworkState::ready());
        client->sendMessage(std::make_shared<HeartbeatMessage>());
        QVERIFY(!client->askIdentity("a", "b"));
        QTest::qWait(20);
    }
};

QTEST_MAIN(ZEKTManagerTest)
#include "ZEKTManagerTest.moc"
