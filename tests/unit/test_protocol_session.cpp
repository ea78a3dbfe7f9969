// Both ends of the session protocol in one process on 127.0.0.1: the server on the test's
// main thread, clients on the library's I/O threads.

#include "ProtocolTestKit.h"
#include "TestFiles.h"

#include "AuthenticationResponseMessage.h"
#include "DisconnectMessage.h"
#include "ErrorMessage.h"
#include "FileTransferResponseMessage.h"
#include "HandshakeResponseMessage.h"
#include "HeartbeatMessage.h"
#include "HeartbeatResponseMessage.h"
#include "ScreenCaptureMessage.h"
#include "SystemStatsMessage.h"
#include "ZEKTIdentity.h"
#include "ZEKTKnownAgents.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QSignalSpy>

class TestProtocolSession : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    ZEKTIdentity m_identity;
    std::unique_ptr<ZEKTServer> m_server;
    std::shared_ptr<FakeVerifier> m_verifier;
    std::shared_ptr<FakeScreen> m_screen;
    std::shared_ptr<FakeInput> m_input;
    std::shared_ptr<MemoryReceiver> m_files;

    void startServer()
    {
        ZEKTServerConfig config;
        config.bindAddress = QHostAddress::LocalHost;
        config.port = 0;
        config.statsIntervalSeconds = 3600;
        config.identity = m_identity;
        m_server = std::make_unique<ZEKTServer>(config);
        m_verifier = std::make_shared<FakeVerifier>();
        m_screen = std::make_shared<FakeScreen>();
        m_input = std::make_shared<FakeInput>();
        m_files = std::make_shared<MemoryReceiver>();
        m_server->setCredentialVerifier(m_verifier);
        m_server->setStatsProvider(std::make_shared<FakeStats>());
        m_server->setScreenProvider(m_screen);
        m_server->setInputProvider(m_input);
        m_server->setFileReceiver(m_files);
        QVERIFY2(m_server->listen(), qPrintable(m_server->errorString()));
    }

    std::shared_ptr<ZEKTClient> newClient(Recorder &recorder)
    {
        auto client = ZEKTClient::create(QStringLiteral("127.0.0.1"), m_server->serverPort());
        recorder.attach(*client);
        return client;
    }

    // A client that is connected and logged in.
    std::shared_ptr<ZEKTClient> loggedIn(Recorder &recorder)
    {
        auto client = newClient(recorder);
        if (!settle(client->connect()).isEmpty() ||
            !settle(client->authenticate(QStringLiteral("admin"), QStringLiteral("secret")))
                 .isEmpty())
            return nullptr;
        return client;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        ZEKTKnownAgents::setPathForTesting(m_dir.filePath(QStringLiteral("known.json")));
        m_identity = ZEKTIdentity::loadOrCreate(m_dir.filePath(QStringLiteral("identity")));
    }

    void init()
    {
        QFile::remove(ZEKTKnownAgents::path());
        ZEKT::resetProtocolTimingsForTesting();
        ZEKT::resetTimeoutsForTesting();
        startServer();
    }

    void cleanup() { m_server.reset(); }

    void handshakeAndLoginDeliverTheirMessagesFirst()
    {
        Recorder r;
        auto client = newClient(r);
        QCOMPARE(ZEKT::toString(client->connectionState()), QStringLiteral("disconnected"));
        QFuture<void> connected = client->connect();
        QCOMPARE(settle(connected), QString());
        // The handshake answer reached the handler before connect() completed.
        QCOMPARE(r.typeNames(), QStringList{QStringLiteral("HandshakeResponseMessage")});
        QCOMPARE(r.all<HandshakeResponseMessage>().first()->protocolVersion, 1u);
        QCOMPARE(r.lastState(), NetworkState::ready());
        QVERIFY(client->connectionState() != ZEKT::ConnectionState::connected);

        QCOMPARE(settle(client->authenticate(QStringLiteral("admin"), QStringLiteral("secret"))),
                 QString());
        QCOMPARE(r.typeNames().value(1), QStringLiteral("AuthenticationResponseMessage"));
        QCOMPARE(ZEKT::toString(client->connectionState()), QStringLiteral("connected"));
        QCOMPARE(m_server->authenticatedSessionCount(), 1);
        // Statistics are pushed right after the login.
        QTRY_COMPARE(r.count(QStringLiteral("SystemStatsMessage")), 1);
        const auto stats = r.all<SystemStatsMessage>().first();
        QCOMPARE(stats->osVersion, QStringLiteral("Debian 12"));
        QCOMPARE(stats->agentVersion, std::optional<QString>(QStringLiteral("0.1.0")));
        QCOMPARE(stats->diskVolumes->first().path, QStringLiteral("/"));

        const QStringList allowed{"CONNECT", "AUTH",  "HEARTBEAT", "SCREEN",
                                  "FILE",    "ERROR", "WARN"};
        QMutexLocker l(&r.lock);
        for (const QString &category : r.logCategories)
            QVERIFY2(allowed.contains(category), qPrintable(category));
    }

    void refusedLoginsFailWithTheAgentsReasonThenBackOff()
    {
        Recorder r;
        auto client = newClient(r);
        QCOMPARE(settle(client->connect()), QString());
        for (int i = 0; i < 5; ++i)
            QCOMPARE(settle(client->authenticate(QStringLiteral("admin"), QStringLiteral("x"))),
                     QStringLiteral("Invalid username or password"));
        QCOMPARE(m_verifier->calls.load(), 5);
        QVERIFY(!r.all<AuthenticationResponseMessage>().first()->success);
        QVERIFY(client->connectionState() != ZEKT::ConnectionState::connected);
        // The sixth attempt, even with the right password, is answered at once with the
        // reason and never reaches the verifier.
        const QString error =
            settle(client->authenticate(QStringLiteral("admin"), QStringLiteral("secret")));
        QVERIFY2(error.startsWith(QStringLiteral("Too many failed logins")), qPrintable(error));
        QCOMPARE(m_verifier->calls.load(), 5);
        QCOMPARE(settle(client->requestScreenCapture(0)).isEmpty(), false);
    }

    void identityIsTrustedOnFirstUseAndCheckedLater()
    {
        const QString endpoint =
            ZEKTKnownAgents::endpoint(QStringLiteral("127.0.0.1"), m_server->serverPort());
        {
            Recorder r;
            auto client = newClient(r);
            QCOMPARE(settle(client->connect()), QString());
        }
        QCOMPARE(ZEKTKnownAgents::fingerprint(endpoint).fingerprint,
                 std::optional<QString>(m_identity.fingerprint()));
        {
            // Unchanged: no question asked.
            Recorder r;
            auto client = newClient(r);
            std::atomic<int> asked{0};
            client->setOnServerIdentityMismatch([&](const QString &, const QString &) {
                ++asked;
                return false;
            });
            QCOMPARE(settle(client->connect()), QString());
            QCOMPARE(asked.load(), 0);
        }
    }

    void changedIdentityFollowsTheAnswer_data()
    {
        QTest::addColumn<int>("answer"); // -1: no callback
        QTest::newRow("trusted") << 1;
        QTest::newRow("rejected") << 0;
        QTest::newRow("no callback") << -1;
    }

    void changedIdentityFollowsTheAnswer()
    {
        QFETCH(int, answer);
        const QString endpoint =
            ZEKTKnownAgents::endpoint(QStringLiteral("127.0.0.1"), m_server->serverPort());
        const QString old(64, QLatin1Char('a'));
        QVERIFY(!ZEKTKnownAgents::store(endpoint, old));

        Recorder r;
        auto client = newClient(r);
        QString seenPrevious, seenNew;
        if (answer >= 0)
            client->setOnServerIdentityMismatch([&](const QString &p, const QString &n) {
                seenPrevious = p;
                seenNew = n;
                return answer == 1;
            });
        const QString error = settle(client->connect());
        if (answer == 1) {
            QCOMPARE(error, QString());
            QCOMPARE(seenPrevious, old);
            QCOMPARE(seenNew, m_identity.fingerprint());
            QCOMPARE(ZEKTKnownAgents::fingerprint(endpoint).fingerprint,
                     std::optional<QString>(m_identity.fingerprint()));
        } else {
            QVERIFY2(error.contains(QStringLiteral("identity")), qPrintable(error));
            QCOMPARE(r.lastState().kind(), NetworkState::Kind::failed);
            QCOMPARE(ZEKTKnownAgents::fingerprint(endpoint).fingerprint,
                     std::optional<QString>(old));
            QCOMPARE(m_server->authenticatedSessionCount(), 0);
        }
    }

    void identityPromptStopsTheHandshakeClockAndNeverBlocksDisconnect()
    {
        const QString endpoint =
            ZEKTKnownAgents::endpoint(QStringLiteral("127.0.0.1"), m_server->serverPort());
        QVERIFY(!ZEKTKnownAgents::store(endpoint, QString(64, QLatin1Char('b'))));
        ZEKT::TimeoutOverrides fast;
        fast.handshake = 1.5;
        ZEKT::setTimeoutsForTesting(fast);

        // A prompt answered long after the handshake time-out still lets the session go on.
        {
            Recorder r;
            auto client = newClient(r);
            client->setOnServerIdentityMismatch([](const QString &, const QString &) {
                QThread::msleep(2500);
                return true;
            });
            QCOMPARE(settle(client->connect()), QString());
        }

        // disconnect() returns while the prompt still waits, and its answer goes nowhere.
        QVERIFY(!ZEKTKnownAgents::store(endpoint, QString(64, QLatin1Char('c'))));
        QSemaphore asked, answer;
        Recorder r;
        auto client = newClient(r);
        client->setOnServerIdentityMismatch([&](const QString &, const QString &) {
            asked.release();
            answer.acquire();
            return true;
        });
        QFuture<void> connecting = client->connect();
        QVERIFY(QTest::qWaitFor([&] { return asked.available() > 0; }, 5000));
        const int calls = r.calls;
        client->disconnect();
        client.reset();
        QVERIFY(!settle(connecting).isEmpty());
        answer.release();
        QTest::qWait(200);
        QCOMPARE(r.calls.load(), calls);
    }

    void commandsReachTheProvidersAndReportTheirResults()
    {
        Recorder r;
        auto client = loggedIn(r);
        QVERIFY(client);
        QCOMPARE(settle(client->requestScreenCapture(424242)), QString());
        // The image is delivered before the command completes, with the caller's display.
        auto images = r.all<ScreenCaptureMessage>();
        QCOMPARE(images.size(), 1);
        QCOMPARE(images.first()->displayID, 424242u);
        QCOMPARE(images.first()->imageData.size(), 1000);
        QCOMPARE(images.first()->displayWidth, 1920u);
        QCOMPARE(images.first()->imageFormat, QStringLiteral("jpeg"));
        images.clear();

        QCOMPARE(settle(client->sendMouseEvent(10.5, 20, 1, true)), QString());
        QCOMPARE(settle(client->sendMouseMoveEvent(1, 2, 3, 4)), QString());
        QCOMPARE(settle(client->sendKeyboardEvent(36, true, 0x100000)), QString());
        {
            QMutexLocker l(&m_input->lock);
            QCOMPARE(m_input->events,
                     (QStringList{"button 10.5 20 1 1", "move 1 2 3 4", "key 36 1 1048576"}));
        }

        m_screen->broken = true;
        QCOMPARE(settle(client->requestScreenCapture(0)), QStringLiteral("No display available"));
        QCOMPARE(settle(client->startContinuousStreaming(0, 0.5f, 10)),
                 QStringLiteral("No display available"));
        QCOMPARE(r.count(QStringLiteral("ErrorMessage")), 0);
    }

    void streamingKeepsAtMostTwoFramesInFlight()
    {
        Recorder r;
        auto client = loggedIn(r);
        QVERIFY(client);
        // The recorder holds every frame, so none is acknowledged.
        QCOMPARE(settle(client->startContinuousStreaming(0, 0.5f, 100)), QString());
        QTRY_COMPARE(r.count(QStringLiteral("ScreenCaptureMessage")), 2);
        QTest::qWait(300);
        QCOMPARE(r.count(QStringLiteral("ScreenCaptureMessage")), 2);

        // Releasing the frames lets more come.
        {
            QMutexLocker l(&r.lock);
            r.messages.clear();
        }
        QTRY_VERIFY(r.count(QStringLiteral("ScreenCaptureMessage")) >= 2);
        // A second start only changes the rate.
        QCOMPARE(settle(client->startContinuousStreaming(0, 0.3f, 0.5)), QString());
        QCOMPARE(settle(client->stopContinuousStreaming()), QString());
        QTRY_COMPARE(m_screen->ended.load(), 1);
    }

    void filesArriveWithProgressAndVerdict_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("slowDisk");
        QTest::newRow("1 byte") << 1 << false;
        QTest::newRow("5 MiB") << 5 * 1024 * 1024 << false;
        // The agent stops reading while chunks wait for the disk, and resumes.
        QTest::newRow("5 MiB to a slow disk") << 5 * 1024 * 1024 << true;
    }

    void filesArriveWithProgressAndVerdict()
    {
        QFETCH(int, size);
        QFETCH(bool, slowDisk);
        m_files->slowWrites = slowDisk;
        QByteArray data(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            data[i] = static_cast<char>(QRandomGenerator::global()->generate());
        const QString path = writeFile(m_dir.filePath(QStringLiteral("upload.bin")), data);

        Recorder r;
        auto client = loggedIn(r);
        QVERIFY(client);
        QMutex lock;
        QList<double> progress;
        QCOMPARE(settle(client->sendFileTransfer(path, QStringLiteral("remote.bin"),
                                                 [&](double p) {
                                                     QMutexLocker l(&lock);
                                                     progress << p;
                                                 })),
                 QString());
        QTRY_COMPARE(r.count(QStringLiteral("FileTransferResponseMessage")), 1);
        const auto verdict = r.all<FileTransferResponseMessage>().first();
        QVERIFY2(verdict->success, qPrintable(verdict->message));
        QCOMPARE(m_files->stored, data);
        QMutexLocker l(&lock);
        QVERIFY(progress.size() >= 2);
        QCOMPARE(progress.first(), 0.0);
        QCOMPARE(progress.last(), 1.0);
        for (int i = 1; i < progress.size(); ++i)
            QVERIFY(progress[i] >= progress[i - 1]);
    }

    void filesTheAgentCannotTakeAreRefusedBeforeTheirBytes()
    {
        Recorder r;
        auto client = loggedIn(r);
        QVERIFY(client);
        const QString refused = writeFile(m_dir.filePath(QStringLiteral("refuse.txt")), "abc");
        QCOMPARE(settle(client->sendFileTransfer(refused, std::nullopt, {})),
                 QStringLiteral("The agent refused the file: Disk full"));

        const QString big = m_dir.filePath(QStringLiteral("big.bin"));
        QFile f(big);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QVERIFY(f.resize(ZEKT::maxFileTransferSize + 1)); // sparse
        f.close();
        const int begunBefore = m_files->begun;
        QVERIFY(settle(client->sendFileTransfer(big, std::nullopt, {})).contains("256 MiB"));
        QCOMPARE(m_files->begun.load(), begunBefore);
        // The session is still usable afterwards.
        QCOMPARE(settle(client->requestScreenCapture(0)), QString());
    }

    void clientDisconnectEndsTheSessionQuietly()
    {
        Recorder r;
        auto client = loggedIn(r);
        QVERIFY(client);
        QSignalSpy closed(m_server.get(), &ZEKTServer::sessionClosed);
        const int callsBefore = r.calls;
        client->disconnect();
        QCOMPARE(ZEKT::toString(client->connectionState()), QStringLiteral("closed"));
        QTRY_COMPARE(closed.size(), 1);
        QVERIFY(closed.first().at(1).toString().contains(QStringLiteral("console closed")));
        QTest::qWait(100);
        QCOMPARE(r.calls.load(), callsBefore); // no handler after disconnect()
        client->disconnect();                  // twice is fine
        QVERIFY(!settle(client->requestScreenCapture(0)).isEmpty());
    }

    void serverStopSendsTheReason()
    {
        Recorder r;
        auto client = loggedIn(r);
        QVERIFY(client);
        m_server->stop(QStringLiteral("Agent shutting down"));
        QTRY_COMPARE(r.count(QStringLiteral("DisconnectMessage")), 1);
        QCOMPARE(r.all<DisconnectMessage>().first()->reason, QStringLiteral("Agent shutting down"));
        QTRY_COMPARE(r.lastState(), NetworkState::cancelled());
        QCOMPARE(ZEKT::toString(client->connectionState()), QStringLiteral("closed"));
    }

    void heartbeatsFlowBothWays()
    {
        ZEKT::ProtocolTimings fast;
        fast.heartbeatInterval = 0.05;
        ZEKT::setProtocolTimingsForTesting(fast);
        Recorder r;
        auto client = loggedIn(r);
        QVERIFY(client);
        QTRY_VERIFY(r.count(QStringLiteral("HeartbeatMessage")) >= 2);
        QTRY_VERIFY(r.count(QStringLiteral("HeartbeatResponseMessage")) >= 2);
        QCOMPARE(ZEKT::toString(client->connectionState()), QStringLiteral("connected"));
    }

    void unauthenticatedSessionsAreLimitedAndTimedOut()
    {
        ZEKT::ProtocolTimings fast;
        fast.authenticationTimeout = 4;
        ZEKT::setProtocolTimingsForTesting(fast);
        startServer();
        QList<std::shared_ptr<ZEKTClient>> clients;
        QList<std::shared_ptr<Recorder>> recorders;
        for (int i = 0; i < 11; ++i) {
            recorders << std::make_shared<Recorder>();
            clients << newClient(*recorders.last());
        }
        QList<QFuture<void>> futures;
        for (auto &c : clients)
            futures << c->connect();
        int failed = 0;
        for (auto &f : futures)
            failed += settle(f).isEmpty() ? 0 : 1;
        QCOMPARE(failed, 1);
        // Nobody logs in: the agent drops them all with a reason.
        for (const auto &rec : recorders)
            QTRY_COMPARE_WITH_TIMEOUT(rec->lastState().kind() == NetworkState::Kind::failed ||
                                          rec->lastState().kind() == NetworkState::Kind::cancelled,
                                      true, 15000);
        QCOMPARE(recorders.first()->all<DisconnectMessage>().value(0)->reason,
                 QStringLiteral("Authentication timed out"));
        clients.clear();
    }
};

QTEST_GUILESS_MAIN(TestProtocolSession)
#include "test_protocol_session.moc"
