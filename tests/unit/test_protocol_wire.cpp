// Bad and silent peers on both ends: scripted bytes over real TLS on 127.0.0.1.

#include "ProtocolTestKit.h"

#include "ErrorMessage.h"
#include "HandshakeResponseMessage.h"
#include "HeartbeatMessage.h"
#include "ZEKTFrameReader.h"
#include "ZEKTFrameType.h"
#include "ZEKTIdentity.h"
#include "ZEKTKnownAgents.h"
#include "ZEKTMessageCodec.h"

#include <QBuffer>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>

#include <cerrno>

namespace {
QByteArray frameOf(ZEKTFrameType type, const QByteArray &body)
{
    return frameHeader(static_cast<quint32>(body.size() + 2), static_cast<quint16>(type)) + body;
}

QByteArray handshake()
{
    return ZEKTMessageCodec::encodeMessage(HandshakeResponseMessage(1, QStringLiteral("t")));
}

QSslConfiguration tlsFor(const ZEKTIdentity *identity)
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(QSsl::TlsV1_3);
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    if (identity) {
        tls.setLocalCertificate(identity->certificate());
        tls.setPrivateKey(identity->privateKey());
    }
    return tls;
}

// An agent that answers the first bytes it receives with a script and then stays silent.
class ScriptedAgent : public QTcpServer {
public:
    ScriptedAgent(const ZEKTIdentity &identity, QByteArray script)
        : m_identity(identity), m_script(std::move(script))
    {
        listen(QHostAddress::LocalHost, 0);
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setSslConfiguration(tlsFor(&m_identity));
        connect(socket, &QSslSocket::readyRead, socket, [this, socket] {
            socket->readAll();
            if (!m_answered && !m_script.isEmpty())
                socket->write(m_script);
            m_answered = true;
        });
        socket->startServerEncryption();
    }

private:
    ZEKTIdentity m_identity;
    QByteArray m_script;
    bool m_answered = false;
};

// Decodes what an agent sent to a raw client.
QList<ZEKTMessagePtr> decodeAll(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    ZEKTFrameReader reader;
    reader.setMaximumFrameSize(ZEKTFrame::maximumSize);
    QList<ZEKTMessagePtr> messages;
    ZEKTFrame frame;
    while (reader.read(buffer, frame) == ZEKTFrameReader::Status::frame)
        if (auto decoded = ZEKTMessageCodec::decodeMessage(frame); decoded.ok())
            messages << decoded.value;
    return messages;
}
} // namespace

class TestProtocolWire : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    ZEKTIdentity m_identity;

    // Runs a client against a scripted agent until the session fails; returns the state.
    NetworkState clientAgainst(const QByteArray &script, Recorder &r, QString *connectError)
    {
        ScriptedAgent agent(m_identity, script);
        auto client = ZEKTClient::create(QStringLiteral("127.0.0.1"), agent.serverPort());
        r.attach(*client);
        *connectError = settle(client->connect());
        (void)QTest::qWaitFor([&] { return r.lastState().kind() == NetworkState::Kind::failed; },
                              10000);
        return r.lastState();
    }

    // Sends `bytes` to the real server as a raw TLS client; returns what came back.
    QByteArray rawExchange(ZEKTServer &server, const QByteArray &bytes)
    {
        QSslSocket socket;
        socket.setSslConfiguration(tlsFor(nullptr));
        QByteArray received;
        connect(&socket, &QSslSocket::readyRead, &socket, [&] { received += socket.readAll(); });
        socket.connectToHostEncrypted(QStringLiteral("127.0.0.1"), server.serverPort());
        if (!QTest::qWaitFor([&] { return socket.isEncrypted(); }, 5000))
            return "<no tls>";
        socket.write(bytes);
        if (!QTest::qWaitFor([&] { return socket.state() == QAbstractSocket::UnconnectedState; },
                             5000))
            return "<still open>";
        return received;
    }

private Q_SLOTS:
    // Runs the next test in a network namespace of its own, where even loopback is down.
    void networkDownIsReportedAsWaitingThenFails()
    {
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("ZEKT_TEST_NETWORK_DOWN"), QStringLiteral("1"));
        child.setProcessEnvironment(env);
        child.start(QStringLiteral("unshare"),
                    {QStringLiteral("-rn"), QCoreApplication::applicationFilePath(),
                     QStringLiteral("connectWithoutNetwork")});
        if (!child.waitForFinished(30000))
            QSKIP("unshare did not run");
        const QByteArray output = child.readAllStandardOutput() + child.readAllStandardError();
        if (child.exitCode() != 0 && output.contains("unshare"))
            QSKIP("network namespaces are not permitted here");
        QVERIFY2(child.exitCode() == 0, output.constData());
        QVERIFY2(output.contains("PASS   : TestProtocolWire::connectWithoutNetwork()"),
                 output.constData());
    }

    void connectWithoutNetwork()
    {
        if (qEnvironmentVariableIsEmpty("ZEKT_TEST_NETWORK_DOWN"))
            QSKIP("runs inside networkDownIsReportedAsWaitingThenFails");
        ZEKT::TimeoutOverrides fast;
        fast.connection = 2.5;
        ZEKT::setTimeoutsForTesting(fast);
        Recorder r;
        auto client = ZEKTClient::create(QStringLiteral("127.0.0.1"), 5905);
        r.attach(*client);
        const QString error = settle(client->connect());
        QVERIFY2(error.contains(QStringLiteral("network is down")), qPrintable(error));
        QMutexLocker l(&r.lock);
        QCOMPARE(r.states.first().kind(), NetworkState::Kind::preparing);
        QVERIFY(r.states.at(1).isNetworkDown());
        QCOMPARE(r.states.at(1).errorCode(), ENETDOWN);
        QCOMPARE(r.states.last().kind(), NetworkState::Kind::failed);
        QCOMPARE(r.states.last().errorCode(), ENETDOWN);
    }

    void initTestCase()
    {
        ZEKTKnownAgents::setPathForTesting(m_dir.filePath(QStringLiteral("known.json")));
        m_identity = ZEKTIdentity::loadOrCreate(m_dir.filePath(QStringLiteral("identity")));
    }

    void init()
    {
        QFile::remove(ZEKTKnownAgents::path());
        ZEKT::resetProtocolTimingsForTesting();
        ZEKT::resetTimeoutsForTesting();
    }

    void silentAgentTimesOut()
    {
        ZEKT::ProtocolTimings fast;
        fast.heartbeatInterval = 0.1;
        ZEKT::setProtocolTimingsForTesting(fast);
        Recorder r;
        QString connectError;
        const NetworkState state = clientAgainst(handshake(), r, &connectError);
        QCOMPARE(connectError, QString());
        QCOMPARE(state.errorCode(), ETIMEDOUT);
        QVERIFY(state.errorDescription().contains(QStringLiteral("timed out")));
    }

    void agentThatNeverAnswersFailsTheHandshake()
    {
        ZEKT::TimeoutOverrides fast;
        fast.handshake = 0.3;
        ZEKT::setTimeoutsForTesting(fast);
        Recorder r;
        QString connectError;
        clientAgainst({}, r, &connectError);
        QVERIFY2(connectError.contains(QStringLiteral("handshake")), qPrintable(connectError));
    }

    void badAgentFramesEndTheSession_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("expected");
        QTest::newRow("oversized before login")
            << handshake() + frameHeader(5000, static_cast<quint16>(ZEKTFrameType::error))
            << "exceeds the limit";
        QTest::newRow("garbage body")
            << handshake() + frameOf(ZEKTFrameType::error, QByteArray("\xa1\x01", 2))
            << "malformed";
        QTest::newRow("short length") << handshake() + frameHeader(1, 0) << "too short";
        QTest::newRow("image before handshake")
            << frameOf(ZEKTFrameType::screenImage, QByteArray("\xa0", 1)) << "malformed";
    }

    void badAgentFramesEndTheSession()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, expected);
        Recorder r;
        QString connectError;
        const NetworkState state = clientAgainst(script, r, &connectError);
        QCOMPARE(state.errorCode(), EPROTO);
        QVERIFY2(state.errorDescription().contains(expected, Qt::CaseInsensitive),
                 qPrintable(state.errorDescription()));
    }

    void unknownFrameTypesAreSkipped()
    {
        ZEKT::ProtocolTimings fast;
        fast.heartbeatInterval = 0.2;
        ZEKT::setProtocolTimingsForTesting(fast);
        Recorder r;
        QString connectError;
        const QByteArray script = handshake() +
                                  frameOf(static_cast<ZEKTFrameType>(999), "whatever") +
                                  ZEKTMessageCodec::encodeMessage(HeartbeatMessage());
        clientAgainst(script, r, &connectError); // ends only by silence
        QCOMPARE(connectError, QString());
        QCOMPARE(r.count(QStringLiteral("HeartbeatMessage")), 1);
        QCOMPARE(r.lastState().errorCode(), ETIMEDOUT);
    }

    void badConsoleFramesEndTheSessionWithAReason_data()
    {
        ZEKTRequest hello;
        hello.kind = ZEKTRequest::Kind::hello;
        hello.protocolVersions = {1};
        ZEKTRequest capture;
        capture.kind = ZEKTRequest::Kind::screenCapture;
        ZEKTRequest future = hello;
        future.protocolVersions = {7};

        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("oversized before login")
            << frameHeader(100000, static_cast<quint16>(ZEKTFrameType::hello))
            << "exceeds the limit";
        QTest::newRow("command before login")
            << ZEKTMessageCodec::encodeRequest(hello) + ZEKTMessageCodec::encodeRequest(capture)
            << "Authentication is required";
        QTest::newRow("garbage body")
            << frameOf(ZEKTFrameType::authenticate, "\xff\x00\x13") << "Malformed";
        QTest::newRow("no common version")
            << ZEKTMessageCodec::encodeRequest(future) << "No common protocol version";
    }

    void badConsoleFramesEndTheSessionWithAReason()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        ZEKTServerConfig config;
        config.bindAddress = QHostAddress::LocalHost;
        config.port = 0;
        config.identity = m_identity;
        ZEKTServer server(config);
        server.setCredentialVerifier(std::make_shared<FakeVerifier>());
        server.setScreenProvider(std::make_shared<FakeScreen>());
        QVERIFY(server.listen());
        const QList<ZEKTMessagePtr> answer = decodeAll(rawExchange(server, bytes));
        QStringList errors;
        for (const auto &m : answer)
            if (auto e = std::dynamic_pointer_cast<const ErrorMessage>(m))
                errors << e->errorMessage;
        QVERIFY2(errors.size() == 1 && errors.first().contains(expected),
                 qPrintable(errors.join(" | ")));
        QVERIFY(answer.last()->typeName() == QLatin1String("DisconnectMessage"));
        QTRY_COMPARE(server.sessionCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestProtocolWire)
#include "test_protocol_wire.moc"
