// The real telvane-agent binary on 127.0.0.1, driven through the zekt client (and a raw
// wire connection for what the client never sends).
#include "AgentProcess.h"
#include "ProtocolTestKit.h"
#include "RawAgentConnection.h"
#include "TestFiles.h"

#include "AuthenticationResponseMessage.h"
#include "DisconnectMessage.h"
#include "ErrorMessage.h"
#include "FileTransferResponseMessage.h"
#include "ScreenCaptureMessage.h"
#include "SystemStatsMessage.h"
#include "ZEKTFileReadyMessage.h"

#include <QCryptographicHash>
#include <QDir>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <turbojpeg.h>

#ifdef TELVANE_AGENT_X11
#include "XvfbServer.h"
#include <xcb/xcb.h>
#endif

#include <sys/resource.h>
#include <unistd.h>

namespace {

const QString kUser = QStringLiteral("tester");
const QString kPassword = QStringLiteral("pässword 1");

// Pixel (x, y) of a JPEG as 0xRRGGBB, and its size.
quint32 jpegPixel(const QByteArray &jpeg, int x, int y, QSize *size)
{
    tjhandle h = tjInitDecompress();
    int w = 0, ht = 0, sub = 0, cs = 0;
    tjDecompressHeader3(h, reinterpret_cast<const uchar *>(jpeg.constData()), jpeg.size(), &w, &ht,
                        &sub, &cs);
    QByteArray rgb(qsizetype(w) * ht * 3, '\0');
    tjDecompress2(h, reinterpret_cast<const uchar *>(jpeg.constData()), jpeg.size(),
                  reinterpret_cast<uchar *>(rgb.data()), w, 0, ht, TJPF_RGB, 0);
    tjDestroy(h);
    *size = QSize(w, ht);
    if (x >= w || y >= ht)
        return 0;
    const auto *p = reinterpret_cast<const uchar *>(rgb.constData()) + (qsizetype(y) * w + x) * 3;
    return quint32(p[0]) << 16 | quint32(p[1]) << 8 | p[2];
}

QStringList uploadsIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace

class AgentProcessTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_credentials;
    QString m_uploads;
    std::unique_ptr<AgentProcess> m_agent;

    // Frames are kept as copies: the client acknowledges a frame (letting the agent send
    // the next) only when its message is released.
    struct Frames {
        QMutex lock;
        QList<ScreenCaptureMessage> list;
        qsizetype size()
        {
            QMutexLocker l(&lock);
            return list.size();
        }
    };

    std::shared_ptr<ZEKTClient> client(quint16 port, Recorder &recorder, bool login = true,
                                       Frames *frames = nullptr)
    {
        auto c = ZEKTClient::create(QStringLiteral("127.0.0.1"), port);
        c->setOnServerIdentityMismatch([](const QString &, const QString &) { return true; });
        recorder.attach(*c);
        if (frames) {
            c->setMessageHandler([&recorder, frames](const ZEKTMessagePtr &m) {
                if (auto *image = dynamic_cast<const ScreenCaptureMessage *>(m.get())) {
                    QMutexLocker l(&frames->lock);
                    frames->list << *image;
                    return;
                }
                QMutexLocker l(&recorder.lock);
                recorder.messages << m;
            });
        }
        if (settle(c->connect()) != QString())
            return nullptr;
        if (login && settle(c->authenticate(kUser, kPassword), 30000) != QString())
            return nullptr;
        return c;
    }
    // Starts an extra agent of this test, with its own folders.
    std::unique_ptr<AgentProcess>
    extraAgent(const QString &name, const QStringList &args, std::function<void()> childSetup = {},
               QProcessEnvironment env = QProcessEnvironment::systemEnvironment())
    {
        auto agent = std::make_unique<AgentProcess>(m_dir.filePath(name));
        const QStringList common{QStringLiteral("--bind"),
                                 QStringLiteral("127.0.0.1"),
                                 QStringLiteral("--credentials-file"),
                                 m_credentials,
                                 QStringLiteral("--uploads-dir"),
                                 m_dir.filePath(name + QStringLiteral("/up"))};
        if (!agent->start(common + args, std::move(childSetup), env))
            return nullptr;
        return agent;
    }

    std::unique_ptr<AgentProcess> simulatedAgent(const QString &name)
    {
        return extraAgent(
            name, {QStringLiteral("--simulate"), QStringLiteral("--port"), QStringLiteral("0")});
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_credentials = m_dir.filePath(QStringLiteral("credentials"));
        m_uploads = m_dir.filePath(QStringLiteral("uploads"));
        QVERIFY(AgentProcess::setPassword(m_credentials, kUser, kPassword));
        m_agent = std::make_unique<AgentProcess>(m_dir.filePath(QStringLiteral("main")));
        QVERIFY(m_agent->start({QStringLiteral("--simulate"), QStringLiteral("--bind"),
                                QStringLiteral("127.0.0.1"), QStringLiteral("--port"),
                                QStringLiteral("0"), QStringLiteral("--stats-interval"),
                                QStringLiteral("0.3"), QStringLiteral("--credentials-file"),
                                m_credentials, QStringLiteral("--uploads-dir"), m_uploads}));
        QVERIFY(m_agent->port() != 0);
    }

    void statisticsFollowTheLogin()
    {
        Recorder r;
        auto c = client(m_agent->port(), r);
        QVERIFY(c);
        QTRY_VERIFY_WITH_TIMEOUT(r.count(QStringLiteral("SystemStatsMessage")) >= 2, 10000);
        const QStringList order = r.typeNames();
        QVERIFY(order.indexOf(QStringLiteral("SystemStatsMessage")) >
                order.indexOf(QStringLiteral("AuthenticationResponseMessage")));
        const auto stats = r.all<SystemStatsMessage>();
        const auto &s = *stats.first();
        QVERIFY(s.totalMemory > 0 && !s.osVersion.isEmpty() && !s.macModel.isEmpty());
        QVERIFY(s.uptimeSeconds && s.screenCaptureAuthorized && s.hardwareUUID && s.lastBootTime &&
                s.lastWakeCause);
        QVERIFY(s.diskVolumes && s.diskVolumes->size() == 2);
        QCOMPARE(s.agentVersion,
                 std::optional<QString>(QStringLiteral(TELVANE_AGENT_VERSION_TEXT)));
        QVERIFY(m_agent->waitForLine(QStringLiteral("tester logged in from")));
        c->disconnect();
    }

    void oneShotAndContinuousFramesShowTheInput()
    {
        Recorder r;
        Frames frames;
        auto c = client(m_agent->port(), r, true, &frames);
        QVERIFY(c);
        QCOMPARE(settle(c->sendMouseMoveEvent(100, 200, 1.5, -2)), QString());
        QCOMPARE(settle(c->sendMouseEvent(100, 200, 1, true)), QString());
        QCOMPARE(settle(c->sendKeyboardEvent(36, true, 0x20000 | 0x100)), QString());
        QVERIFY(m_agent->waitForLine(
            QStringLiteral("input: mouse move to (100, 200) delta (1.5, -2)")));
        QVERIFY(m_agent->waitForLine(QStringLiteral("input: mouse button 1 down at (100, 200)")));
        QVERIFY(m_agent->waitForLine(QStringLiteral("input: key Return (shift) code 36 down")));

        // Any display identifier is accepted and echoed; the frame draws the pointer
        // (wire origin bottom left) in red.
        QCOMPARE(settle(c->requestScreenCapture(424242)), QString());
        QTRY_VERIFY(frames.size() == 1);
        const ScreenCaptureMessage shot = frames.list.first();
        QCOMPARE(shot.displayID, 424242u);
        QCOMPARE(shot.imageFormat, QStringLiteral("jpeg"));
        QSize size;
        const quint32 cross = jpegPixel(shot.imageData, 100, 1080 - 200, &size);
        QCOMPARE(size, QSize(1920, 1080));
        QCOMPARE(QSize(int(shot.displayWidth), int(shot.displayHeight)), size);
        QVERIFY2((cross >> 16) > 200 && ((cross >> 8) & 0xFF) < 100,
                 qPrintable(QString::number(cross, 16)));

        QCOMPARE(settle(c->startContinuousStreaming(7, 0.5f, 10.0)), QString());
        QTRY_VERIFY_WITH_TIMEOUT(frames.size() >= 5, 15000);
        QCOMPARE(settle(c->startContinuousStreaming(7, 0.3f, 3.64)), QString()); // replaces rate
        QCOMPARE(settle(c->stopContinuousStreaming()), QString());
        const qsizetype afterStop = frames.size();
        for (qsizetype i = 1; i < afterStop; ++i) {
            QCOMPARE(frames.list[i].displayID, 7u);
            QVERIFY(frames.list[i].frameNumber > frames.list[i - 1].frameNumber);
            QVERIFY(frames.list[i].sequenceNumber.has_value());
        }
        QTest::qWait(700);
        QCOMPARE(frames.size(), afterStop); // nothing after the stop
        c->disconnect();
    }

    void uploadsAreSanitisedAndNeverOverwrite()
    {
        Recorder r;
        auto c = client(m_agent->port(), r);
        QVERIFY(c);
        const QString local =
            writeFile(m_dir.filePath(QStringLiteral("local.txt")), QByteArray(300000, 'x') + "end");
        // Paths are reduced to their last component; hidden names and invisible format
        // characters are cleaned; an existing file is never overwritten.
        const QStringList names = {QStringLiteral("../../etc/passwd"),
                                   QStringLiteral("..\\evil\u202Ename.txt"),
                                   QStringLiteral("evilname.txt"), QStringLiteral("tab\tbed")};
        for (const QString &name : names) {
            QCOMPARE(settle(c->sendFileTransfer(local, name, nullptr)), QString());
            QTRY_COMPARE(r.count(QStringLiteral("FileTransferResponseMessage")),
                         names.indexOf(name) + 1);
        }
        for (const auto &answer : r.all<FileTransferResponseMessage>())
            QVERIFY2(answer->success, qPrintable(answer->message));
        QCOMPARE(uploadsIn(m_uploads),
                 QStringList({QStringLiteral("evilname (1).txt"), QStringLiteral("evilname.txt"),
                              QStringLiteral("passwd"), QStringLiteral("tabbed")}));
        QCOMPARE(readFile(m_uploads + QStringLiteral("/evilname.txt")).size(), 300003);
        c->disconnect();
    }

    void digestMismatchAndCommandsBeforeLogin()
    {
        RawAgentConnection raw;
        QVERIFY(raw.open(m_agent->port()));
        QVERIFY(raw.login(kUser, kPassword));
        ZEKTRequest begin;
        begin.kind = ZEKTRequest::Kind::fileBegin;
        begin.requestId = 900;
        begin.fileName = QStringLiteral("tampered.bin");
        begin.fileSize = 5;
        raw.send(begin);
        const auto ready = std::dynamic_pointer_cast<const ZEKTFileReadyMessage>(
            raw.nextOf(QStringLiteral("ZEKTFileReadyMessage")));
        QVERIFY(ready && ready->accepted);
        ZEKTRequest chunk = begin;
        chunk.kind = ZEKTRequest::Kind::fileChunk;
        chunk.data = "hello";
        raw.send(chunk);
        ZEKTRequest end = begin;
        end.kind = ZEKTRequest::Kind::fileEnd;
        end.sha256 = QCryptographicHash::hash("hellO", QCryptographicHash::Sha256);
        raw.send(end);
        const auto verdict = std::dynamic_pointer_cast<const FileTransferResponseMessage>(
            raw.nextOf(QStringLiteral("FileTransferResponseMessage")));
        QVERIFY(verdict);
        QVERIFY(!verdict->success);
        QVERIFY(!verdict->message.isEmpty());
        QVERIFY(!uploadsIn(m_uploads).join(' ').contains(QStringLiteral("tampered")));
        QVERIFY(!uploadsIn(m_uploads).join(' ').contains(QStringLiteral(".telvane-upload")));

        // Before the login nothing but authentication is accepted.
        RawAgentConnection early;
        QVERIFY(early.open(m_agent->port()));
        ZEKTRequest hello;
        hello.kind = ZEKTRequest::Kind::hello;
        hello.protocolVersions = {1};
        early.send(hello);
        ZEKTRequest shot;
        shot.kind = ZEKTRequest::Kind::screenCapture;
        shot.requestId = 1;
        early.send(shot);
        QStringList seen;
        while (const auto m = early.next(5000))
            seen << m->typeName();
        QVERIFY2(!seen.contains(QStringLiteral("ScreenCaptureMessage")),
                 qPrintable(seen.join(',')));
        QVERIFY2(seen.contains(QStringLiteral("ErrorMessage")) ||
                     seen.contains(QStringLiteral("DisconnectMessage")),
                 qPrintable(seen.join(',')));
        QVERIFY(early.waitClosed());
    }

    void fileSizeLimitGivesAVerdictAndNoPartialFile()
    {
        // A per-process file-size limit stands in for a full disk or quota.
        auto agent = extraAgent(
            QStringLiteral("limited"),
            {QStringLiteral("--simulate"), QStringLiteral("--port"), QStringLiteral("0")}, [] {
                rlimit limit{64 * 1024, 64 * 1024};
                setrlimit(RLIMIT_FSIZE, &limit);
            });
        QVERIFY(agent);
        Recorder r;
        auto c = client(agent->port(), r);
        QVERIFY(c);
        const QString local =
            writeFile(m_dir.filePath(QStringLiteral("big.bin")), QByteArray(200 * 1024, 'b'));
        settle(c->sendFileTransfer(local, QStringLiteral("big.bin"), nullptr));
        QTRY_COMPARE_WITH_TIMEOUT(r.count(QStringLiteral("FileTransferResponseMessage")), 1, 15000);
        const auto verdict = r.all<FileTransferResponseMessage>().first();
        QVERIFY(!verdict->success);
        QVERIFY2(verdict->message.contains(QStringLiteral("larger than this computer allows")),
                 qPrintable(verdict->message));
        QCOMPARE(uploadsIn(m_dir.filePath(QStringLiteral("limited/up"))), QStringList());
        QCOMPARE(settle(c->requestScreenCapture(1)), QString()); // the agent lives on
        c->disconnect();
    }

    void failedLoginsBackOffWithoutTellingWhoExists()
    {
        auto agent = simulatedAgent(QStringLiteral("backoff"));
        QVERIFY(agent);
        RawAgentConnection raw;
        QVERIFY(raw.open(agent->port()));
        QStringList reasons;
        for (int i = 0; i < 5; ++i) {
            ZEKTRequest auth;
            auth.kind = i == 0 ? ZEKTRequest::Kind::hello : ZEKTRequest::Kind::authenticate;
            if (i == 0) {
                auth.protocolVersions = {1};
                raw.send(auth);
                auth.kind = ZEKTRequest::Kind::authenticate;
            }
            auth.username = i % 2 ? kUser : QStringLiteral("nobody");
            auth.password = QStringLiteral("wrong");
            raw.send(auth);
            const auto answer = std::dynamic_pointer_cast<const AuthenticationResponseMessage>(
                raw.nextOf(QStringLiteral("AuthenticationResponseMessage"), 30000));
            QVERIFY(answer);
            QVERIFY(!answer->success);
            reasons << answer->reason;
        }
        QCOMPARE(reasons.count(reasons.first()),
                 5); // same words for unknown user and wrong password
        // The sixth attempt, even with the right password, waits out the back-off.
        Recorder r;
        auto c = client(agent->port(), r, false);
        QVERIFY(c);
        const QString refused = settle(c->authenticate(kUser, kPassword), 30000);
        QVERIFY2(refused.contains(QStringLiteral("Too many failed logins")), qPrintable(refused));
        c->disconnect();
    }

    void withoutDisplayTheScreenIsNotAuthorized()
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("DISPLAY"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        auto agent = extraAgent(QStringLiteral("nodisplay"),
                                {QStringLiteral("--port"), QStringLiteral("0"),
                                 QStringLiteral("--stats-interval"), QStringLiteral("0.5")},
                                {}, env);
        QVERIFY(agent);
        Recorder r;
        auto c = client(agent->port(), r);
        QVERIFY(c);
        QTRY_VERIFY_WITH_TIMEOUT(r.count(QStringLiteral("SystemStatsMessage")) >= 1, 10000);
        const auto s = r.all<SystemStatsMessage>().first();
        QCOMPARE(s->screenCaptureAuthorized, std::optional<bool>(false));
        QCOMPARE(s->activeProcess, QString());
        QVERIFY(s->totalMemory > 0);
        const QString error = settle(c->requestScreenCapture(1));
        QVERIFY2(error.contains(QStringLiteral("No display available")), qPrintable(error));
        QCOMPARE(r.count(QStringLiteral("ScreenCaptureMessage")), 0);
        c->disconnect();
    }

    void fleetServesConsecutivePorts()
    {
        // Three free consecutive ports.
        quint16 base = 0;
        for (quint16 candidate = quint16(30000 + getpid() % 20000); !base && candidate < 60000;
             candidate += 7) {
            QTcpServer probes[3];
            bool free = true;
            for (int i = 0; i < 3 && free; ++i)
                free = probes[i].listen(QHostAddress::LocalHost, quint16(candidate + i));
            if (free)
                base = candidate;
        }
        QVERIFY(base);
        auto agent =
            extraAgent(QStringLiteral("fleet"), {QStringLiteral("--fleet"), QStringLiteral("3"),
                                                 QStringLiteral("--port"), QString::number(base)});
        QVERIFY(agent);
        QVERIFY(agent->waitForLine(QStringLiteral("listening on 127.0.0.1:%1").arg(base + 2)));
        // Logins run in parallel; each agent reports its own identity values.
        Recorder recorders[3];
        std::shared_ptr<ZEKTClient> clients[3];
        QList<QFuture<void>> logins;
        for (int i = 0; i < 3; ++i) {
            clients[i] = ZEKTClient::create(QStringLiteral("127.0.0.1"), quint16(base + i));
            clients[i]->setOnServerIdentityMismatch(
                [](const QString &, const QString &) { return true; });
            recorders[i].attach(*clients[i]);
            QCOMPARE(settle(clients[i]->connect()), QString());
            logins << clients[i]->authenticate(kUser, kPassword);
        }
        QSet<QString> serials;
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(settle(logins[i], 30000), QString());
            QTRY_VERIFY(recorders[i].count(QStringLiteral("SystemStatsMessage")) >= 1);
            serials << *recorders[i].all<SystemStatsMessage>().first()->serialNumber;
            clients[i]->disconnect();
        }
        QCOMPARE(serials.size(), 3);
    }

    void x11ModeServesTheDisplay()
    {
#ifdef TELVANE_AGENT_X11
        if (!XvfbServer::available())
            QSKIP("Xvfb is not installed; the X11 end-to-end test needs it");
        XvfbServer xvfb;
        QVERIFY(xvfb.start(1280, 800));
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DISPLAY"), xvfb.display());
        env.remove(QStringLiteral("XDG_SESSION_TYPE"));
        auto agent = extraAgent(QStringLiteral("x11"),
                                {QStringLiteral("--port"), QStringLiteral("0")}, {}, env);
        QVERIFY(agent);
        Recorder r;
        Frames frames;
        auto c = client(agent->port(), r, true, &frames);
        QVERIFY(c);
        QTRY_VERIFY_WITH_TIMEOUT(r.count(QStringLiteral("SystemStatsMessage")) >= 1, 10000);
        const auto s = r.all<SystemStatsMessage>().first();
        QCOMPARE(s->screenCaptureAuthorized, std::optional<bool>(true));
        QCOMPARE(s->accessibilityAuthorized, std::optional<bool>(true));
        QCOMPARE(s->mainDisplayResolution, std::optional<QString>(QStringLiteral("1280x800")));

        QCOMPARE(settle(c->requestScreenCapture(1)), QString());
        QTRY_COMPARE(frames.size(), 1);
        QCOMPARE(frames.list.first().displayWidth, 1280u);
        QCOMPARE(settle(c->sendMouseMoveEvent(300, 800 - 200, 0, 0)), QString());
        qputenv("DISPLAY", xvfb.display().toLocal8Bit());
        xcb_connection_t *x = xcb_connect(nullptr, nullptr);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
        auto *pointer = xcb_query_pointer_reply(x, xcb_query_pointer(x, root), nullptr);
        QVERIFY(pointer);
        QCOMPARE(int(pointer->root_x), 300);
        QCOMPARE(int(pointer->root_y), 200);
        std::free(pointer);
        xcb_disconnect(x);
        c->disconnect();
#else
        QSKIP("built without X11");
#endif
    }

    // --fingerprint reads an identity and never makes one: a user comparing fingerprints
    // must not get the value of a fresh identity nobody serves.
    void fingerprintWithoutAnIdentityMakesNone_data()
    {
        QTest::addColumn<QString>("configDir"); // empty: the default folder
        QTest::newRow("given folder") << m_dir.filePath(QStringLiteral("no-identity"));
        QTest::newRow("default folder") << QString();
    }

    void fingerprintWithoutAnIdentityMakesNone()
    {
        QFETCH(QString, configDir);
        const QString looked =
            configDir.isEmpty()
                ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                      QStringLiteral("/telvane-agent")
                : configDir;
        QStringList args{QStringLiteral("--fingerprint")};
        if (!configDir.isEmpty())
            args << QStringLiteral("--config-dir") << configDir;
        QProcess agent;
        agent.start(AgentProcess::binary(), args);
        QVERIFY(agent.waitForFinished(30000));
        QCOMPARE(agent.exitCode(), 1);
        QVERIFY(agent.readAllStandardOutput().isEmpty());
        const QString error = QString::fromUtf8(agent.readAllStandardError());
        QVERIFY2(error.contains(looked), qPrintable(error));
        QVERIFY(!QFileInfo::exists(looked));

        // Once the agent made its identity, --fingerprint prints what it logged.
        auto served = simulatedAgent(QStringLiteral("served"));
        QVERIFY(served);
        const QString logged =
            served->lines().filter(QStringLiteral("identity fingerprint ")).value(0);
        agent.start(AgentProcess::binary(),
                    {QStringLiteral("--fingerprint"), QStringLiteral("--config-dir"),
                     m_dir.filePath(QStringLiteral("served/config"))});
        QVERIFY(agent.waitForFinished(30000));
        QCOMPARE(agent.exitCode(), 0);
        const QString printed = QString::fromUtf8(agent.readAllStandardOutput()).trimmed();
        QCOMPARE(printed.size(), 64);
        QVERIFY2(logged.endsWith(printed), qPrintable(logged));
    }

    // One event, one line, its reason said once: whether the console or the agent ended it.
    void eachLogLineSaysItsReasonOnce()
    {
        auto agent = simulatedAgent(QStringLiteral("reasons"));
        QVERIFY(agent);
        Recorder first;
        auto byConsole = client(agent->port(), first);
        QVERIFY(byConsole);
        byConsole->disconnect();
        QVERIFY(agent->waitForLine(QStringLiteral("closed")));
        Recorder second;
        auto byAgent = client(agent->port(), second);
        QVERIFY(byAgent);
        QCOMPARE(agent->terminate(), 0);

        const QStringList lines = agent->lines();
        for (const QString &line : lines) {
            QStringList parts = line.split(QStringLiteral(": "));
            parts.removeFirst(); // time and category
            QVERIFY2(QSet<QString>(parts.begin(), parts.end()).size() == parts.size(),
                     qPrintable(line));
        }
        for (const QString &reason : {QStringLiteral("The console closed the session"),
                                      QStringLiteral("The agent is shutting down (SIGTERM)")})
            QVERIFY2(lines.filter(reason).size() == 1, qPrintable(lines.join(u'\n')));
        byAgent->disconnect();
    }

    void stopSendsADisconnectWithTheReason()
    {
        Recorder r;
        auto c = client(m_agent->port(), r);
        QVERIFY(c);
        QCOMPARE(m_agent->terminate(), 0);
        QTRY_COMPARE(r.count(QStringLiteral("DisconnectMessage")), 1);
        QVERIFY(r.all<DisconnectMessage>().first()->reason.contains(QStringLiteral("SIGTERM")));
        QVERIFY(m_agent->lines().filter(QStringLiteral("stopping on SIGTERM")).size() == 1);
        c->disconnect();
    }
};

QTEST_GUILESS_MAIN(AgentProcessTest)
#include "AgentProcessTest.moc"
