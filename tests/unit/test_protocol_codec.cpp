// Frames, message records, the agent identity, the known-agents file and the login
// back-off, without any network.

#include "AuthenticationResponseMessage.h"
#include "DisconnectMessage.h"
#include "ErrorMessage.h"
#include "FileTransferResponseMessage.h"
#include "HandshakeResponseMessage.h"
#include "HeartbeatMessage.h"
#include "HeartbeatResponseMessage.h"
#include "ProtocolTestKit.h"
#include "ScreenCaptureMessage.h"
#include "SystemStatsMessage.h"
#include "TestFiles.h"
#include "ZEKT.h"
#include "ZEKTCommandResultMessage.h"
#include "ZEKTError.h"
#include "ZEKTFileReadyMessage.h"
#include "ZEKTFrameReader.h"
#include "ZEKTFrameType.h"
#include "ZEKTIdentity.h"
#include "ZEKTKnownAgents.h"
#include "ZEKTLoginBackoff.h"
#include "ZEKTMessageCodec.h"

#include <QBuffer>
#include <QCborArray>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <thread>
#include <vector>

namespace {
// Reads every frame out of `bytes`, fed in pieces of `step` bytes.
QList<ZEKTFrame> readAll(const QByteArray &bytes, qsizetype step, QString *error = nullptr,
                         qsizetype limit = ZEKTFrame::maximumSize)
{
    ZEKTFrameReader reader;
    reader.setMaximumFrameSize(limit);
    QByteArray fed;
    QBuffer buffer(&fed);
    buffer.open(QIODevice::ReadOnly);
    QList<ZEKTFrame> frames;
    for (qsizetype at = 0; at < bytes.size(); at += step) {
        const qint64 pos = buffer.pos();
        fed.append(bytes.mid(at, step));
        buffer.seek(pos);
        ZEKTFrame frame;
        for (;;) {
            const auto status = reader.read(buffer, frame);
            if (status == ZEKTFrameReader::Status::frame) {
                frames << frame;
                continue;
            }
            if (status == ZEKTFrameReader::Status::error) {
                if (error)
                    *error = reader.errorString();
                return frames;
            }
            break;
        }
    }
    return frames;
}

ZEKTMessagePtr roundTrip(const ZEKTMessage &message)
{
    const QList<ZEKTFrame> frames = readAll(ZEKTMessageCodec::encodeMessage(message), 7);
    if (frames.size() != 1)
        return nullptr;
    const auto decoded = ZEKTMessageCodec::decodeMessage(frames.first());
    return decoded.ok() ? decoded.value : nullptr;
}

ZEKTRequest roundTrip(const ZEKTRequest &request)
{
    const QList<ZEKTFrame> frames = readAll(ZEKTMessageCodec::encodeRequest(request), 5);
    Q_ASSERT(frames.size() == 1);
    const auto decoded = ZEKTMessageCodec::decodeRequest(frames.first());
    Q_ASSERT(decoded.ok());
    return decoded.value;
}

ZEKTFrame rawFrame(ZEKTFrameType type, const QCborMap &body)
{
    return {static_cast<quint16>(type), body.toCborValue().toCbor()};
}
} // namespace

class TestProtocolCodec : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void framesSurviveAnySplit()
    {
        QByteArray stream;
        for (int i = 0; i < 3; ++i)
            stream += ZEKTMessageCodec::encodeMessage(ErrorMessage(QString(i * 50, 'e')));
        for (qsizetype step : {1, 2, 5, 64, 100000}) {
            const auto frames = readAll(stream, step);
            QCOMPARE(frames.size(), 3);
            QCOMPARE(frames[2].type, static_cast<quint16>(ZEKTFrameType::error));
        }
    }

    void lengthsAreCheckedBeforeAllocating()
    {
        QString error;
        // A header announcing 4 GiB with no body: refused from the header alone.
        QCOMPARE(readAll(frameHeader(0xffffffffu, 69), 6, &error).size(), 0);
        QVERIFY(error.contains(QStringLiteral("exceeds the limit")));

        // Exactly at the limit passes, one byte more does not.
        const qsizetype limit = 4096;
        const QByteArray fits = frameHeader(limit - 4, 69) + QByteArray(limit - 6, 'x');
        QCOMPARE(readAll(fits, 1000, &error, limit).size(), 1);
        error.clear();
        QCOMPARE(readAll(frameHeader(limit - 3, 69), 6, &error, limit).size(), 0);
        QVERIFY(!error.isEmpty());

        error.clear();
        QCOMPARE(readAll(frameHeader(1, 69) + "x", 10, &error).size(), 0);
        QVERIFY(error.contains(QStringLiteral("too short")));
    }

    void agentMessagesRoundTrip()
    {
        QVERIFY(std::dynamic_pointer_cast<const HeartbeatMessage>(roundTrip(HeartbeatMessage())));
        QVERIFY(std::dynamic_pointer_cast<const HeartbeatResponseMessage>(
            roundTrip(HeartbeatResponseMessage())));
        auto bye = std::dynamic_pointer_cast<const DisconnectMessage>(
            roundTrip(DisconnectMessage(QStringLiteral("bye"))));
        QCOMPARE(bye->reason, QStringLiteral("bye"));
        auto hs = std::dynamic_pointer_cast<const HandshakeResponseMessage>(
            roundTrip(HandshakeResponseMessage(1, QStringLiteral("2.0"))));
        QCOMPARE(hs->agentVersion, QStringLiteral("2.0"));
        auto auth = std::dynamic_pointer_cast<const AuthenticationResponseMessage>(
            roundTrip(AuthenticationResponseMessage(false, QStringLiteral("no"))));
        QCOMPARE(auth->success, false);
        QCOMPARE(auth->reason, QStringLiteral("no"));
        auto err = std::dynamic_pointer_cast<const ErrorMessage>(
            roundTrip(ErrorMessage(QStringLiteral("boom"))));
        QCOMPARE(err->errorMessage, QStringLiteral("boom"));
        auto verdict = std::dynamic_pointer_cast<const FileTransferResponseMessage>(
            roundTrip(FileTransferResponseMessage(true, QStringLiteral("ok"))));
        QCOMPARE(verdict->message, QStringLiteral("ok"));
        auto result = std::dynamic_pointer_cast<const ZEKTCommandResultMessage>(
            roundTrip(ZEKTCommandResultMessage(7, false, QStringLiteral("No display"))));
        QCOMPARE(result->requestId, 7u);
        QCOMPARE(result->error, QStringLiteral("No display"));
        auto ready = std::dynamic_pointer_cast<const ZEKTFileReadyMessage>(
            roundTrip(ZEKTFileReadyMessage(9, true)));
        QCOMPARE(ready->transferId, 9u);
        QVERIFY(ready->accepted);

        for (std::optional<quint32> sequence : {std::optional<quint32>(), std::optional(5u)}) {
            const ScreenCaptureMessage image(3, QByteArray(300000, 'j'), QStringLiteral("jpeg"),
                                             0.75f, (1ull << 40), sequence, 1920, 1080);
            auto back = std::dynamic_pointer_cast<const ScreenCaptureMessage>(roundTrip(image));
            QVERIFY(back);
            QCOMPARE(back->displayID, 3u);
            QCOMPARE(back->imageData, image.imageData);
            QCOMPARE(back->quality, 0.75f);
            QCOMPARE(back->frameNumber, 1ull << 40);
            QCOMPARE(back->sequenceNumber, sequence);
            QCOMPARE(back->displayHeight, 1080u);
        }
    }

    void statisticsKeepEveryField()
    {
        SystemStatsMessage s;
        s.totalMemory = 1ull << 36;
        s.freeMemory = 5;
        s.totalDiskSpace = 6;
        s.freeDiskSpace = 7;
        s.osVersion = QStringLiteral("os");
        s.macModel = QStringLiteral("model");
        s.cpuUsage = 33.5;
        s.activeProcess = QStringLiteral("proc");
        auto empty = std::dynamic_pointer_cast<const SystemStatsMessage>(roundTrip(s));
        QCOMPARE(empty->totalMemory, 1ull << 36);
        QCOMPARE(empty->cpuUsage, 33.5);
        QVERIFY(!empty->uptimeSeconds && !empty->diskVolumes && !empty->lastBootTime);

        s.uptimeSeconds = 99;
        s.agentVersion = QStringLiteral("1");
        s.screenCaptureAuthorized = true;
        s.accessibilityAuthorized = false;
        s.screenLocked = true;
        s.primaryIPAddress = QStringLiteral("10.0.0.1");
        s.loggedInUser = QStringLiteral("u");
        s.networkName = QStringLiteral("n");
        s.displayCount = 2;
        s.mainDisplayResolution = QStringLiteral("1920x1080");
        s.serialNumber = QStringLiteral("s");
        s.hardwareUUID = QStringLiteral("h");
        s.fileVaultEnabled = false;
        s.sipEnabled = true;
        s.gatekeeperEnabled = false;
        s.mdmEnrolled = true;
        s.lastBootTime = QDateTime::fromMSecsSinceEpoch(1700000000123, Qt::UTC);
        s.lastSleepCause = QStringLiteral("sleep");
        s.lastWakeCause = QStringLiteral("wake");
        s.diskVolumes = QList<ZEKTDiskVolumeInfo>{{"a", "/", 10, 5}, {"b", "/home", 20, 1}};
        auto full = std::dynamic_pointer_cast<const SystemStatsMessage>(roundTrip(s));
        QCOMPARE(full->uptimeSeconds, s.uptimeSeconds);
        QCOMPARE(full->accessibilityAuthorized, std::optional(false));
        QCOMPARE(full->displayCount, s.displayCount);
        QCOMPARE(full->mdmEnrolled, std::optional(true));
        QCOMPARE(full->lastBootTime, s.lastBootTime);
        QCOMPARE(full->lastWakeCause, s.lastWakeCause);
        QCOMPARE(*full->diskVolumes, *s.diskVolumes);
    }

    void consoleRequestsRoundTrip()
    {
        ZEKTRequest r;
        r.kind = ZEKTRequest::Kind::hello;
        r.protocolVersions = {1, 2};
        r.clientName = QStringLiteral("c");
        QCOMPARE(roundTrip(r).protocolVersions, r.protocolVersions);

        r = {};
        r.kind = ZEKTRequest::Kind::authenticate;
        r.username = QStringLiteral("ü");
        r.password = QStringLiteral("p w");
        QCOMPARE(roundTrip(r).password, r.password);

        r = {};
        r.kind = ZEKTRequest::Kind::startStreaming;
        r.requestId = 12;
        r.displayID = 1;
        r.quality = 0.25f;
        r.frameRate = 0.5;
        auto s = roundTrip(r);
        QCOMPARE(s.requestId, 12u);
        QCOMPARE(s.frameRate, 0.5);
        QCOMPARE(s.quality, 0.25f);

        r = {};
        r.kind = ZEKTRequest::Kind::mouseButton;
        r.x = -1.5;
        r.y = 2;
        r.button = -1;
        r.pressed = true;
        auto m = roundTrip(r);
        QCOMPARE(m.x, -1.5);
        QCOMPARE(m.button, -1);

        r = {};
        r.kind = ZEKTRequest::Kind::mouseMove;
        r.deltaY = 4.25;
        QCOMPARE(roundTrip(r).deltaY, 4.25);

        r = {};
        r.kind = ZEKTRequest::Kind::key;
        r.keyCode = 65535;
        r.modifiers = 0xffffffffu;
        QCOMPARE(roundTrip(r).modifiers, 0xffffffffu);

        r = {};
        r.kind = ZEKTRequest::Kind::fileBegin;
        r.fileName = QStringLiteral("a.txt");
        r.fileSize = ZEKT::maxFileTransferSize;
        QCOMPARE(roundTrip(r).fileSize, ZEKT::maxFileTransferSize);

        r = {};
        r.kind = ZEKTRequest::Kind::fileChunk;
        r.data = QByteArray(1000, 'd');
        QCOMPARE(roundTrip(r).data, r.data);

        // Chunks built in place decode like any other, whatever the size class.
        for (qsizetype size : {0, 23, 24, 255, 256, 65535, 65536, 1 << 20}) {
            auto chunk = ZEKTMessageCodec::fileChunkFrame(77, size);
            memset(chunk.frame.data() + chunk.dataOffset, 'c', size);
            const auto frames = readAll(chunk.frame, 4096);
            QCOMPARE(frames.size(), 1);
            const auto decoded = ZEKTMessageCodec::decodeRequest(frames.first());
            QVERIFY2(decoded.ok(), qPrintable(decoded.error));
            QCOMPARE(decoded.value.requestId, 77u);
            QCOMPARE(decoded.value.data, QByteArray(size, 'c'));
            ZEKTFrame frame = frames.first();
            const auto taken = ZEKTMessageCodec::takeFileChunk(frame);
            QVERIFY(taken);
            QCOMPARE(taken->requestId, 77u);
            QCOMPARE(taken->data, QByteArray(size, 'c'));
        }
        // Another valid layout (keys in the other order) is left to the full decoder.
        ZEKTFrame reordered =
            rawFrame(ZEKTFrameType::fileChunk, {{"data", QByteArray("xy")}, {"requestId", 3}});
        QVERIFY(!ZEKTMessageCodec::takeFileChunk(reordered));
        QCOMPARE(ZEKTMessageCodec::decodeRequest(reordered).value.data, QByteArray("xy"));
        // A length that does not match the body is not taken either.
        ZEKTFrame cut = readAll(ZEKTMessageCodec::fileChunkFrame(1, 300).frame, 4096).first();
        cut.body.chop(1);
        QVERIFY(!ZEKTMessageCodec::takeFileChunk(cut));
        QVERIFY(!ZEKTMessageCodec::decodeRequest(cut).error.isEmpty());

        r = {};
        r.kind = ZEKTRequest::Kind::fileEnd;
        r.sha256 = QByteArray(32, 's');
        QCOMPARE(roundTrip(r).sha256, r.sha256);

        for (auto kind : {ZEKTRequest::Kind::heartbeat, ZEKTRequest::Kind::heartbeatResponse,
                          ZEKTRequest::Kind::stopStreaming, ZEKTRequest::Kind::frameAck,
                          ZEKTRequest::Kind::screenCapture, ZEKTRequest::Kind::disconnect}) {
            r = {};
            r.kind = kind;
            r.frameNumber = 77;
            r.reason = QStringLiteral("r");
            QCOMPARE(static_cast<int>(roundTrip(r).kind), static_cast<int>(kind));
        }
    }

    void badBodiesAreErrorsAndUnknownTypesSkipped()
    {
        QVERIFY(ZEKTMessageCodec::decodeMessage({999, QByteArray("junk")}).skipped);
        QVERIFY(ZEKTMessageCodec::decodeRequest({999, QByteArray("junk")}).skipped);

        // Not CBOR, not a map, trailing bytes.
        const auto type = static_cast<quint16>(ZEKTFrameType::error);
        QVERIFY(
            !ZEKTMessageCodec::decodeMessage({type, QByteArray("\xff\xff", 2)}).error.isEmpty());
        QVERIFY(!ZEKTMessageCodec::decodeMessage({type, QCborValue(5).toCbor()}).error.isEmpty());
        QByteArray trailing = QCborMap{{"errorMessage", "x"}}.toCborValue().toCbor() + "x";
        QVERIFY(ZEKTMessageCodec::decodeMessage({type, trailing}).error.contains("trailing"));

        // Missing, mistyped and out-of-range fields.
        QVERIFY(
            !ZEKTMessageCodec::decodeMessage(rawFrame(ZEKTFrameType::error, {})).error.isEmpty());
        const auto wrongType = ZEKTMessageCodec::decodeMessage(
            rawFrame(ZEKTFrameType::authenticationResponse, {{"success", "yes"}, {"reason", ""}}));
        QVERIFY(wrongType.error.contains(QStringLiteral("\"success\"")));
        QVERIFY(!ZEKTMessageCodec::decodeMessage(
                     rawFrame(ZEKTFrameType::handshakeResponse,
                              {{"protocolVersion", -1}, {"agentVersion", "1"}}))
                     .error.isEmpty());
        QCborMap stats{{"totalMemory", 1},   {"freeMemory", 1},     {"totalDiskSpace", 1},
                       {"freeDiskSpace", 1}, {"osVersion", "o"},    {"macModel", "m"},
                       {"cpuUsage", 1.0},    {"activeProcess", "p"}};
        QVERIFY(ZEKTMessageCodec::decodeMessage(rawFrame(ZEKTFrameType::systemStats, stats)).ok());
        stats.insert(QStringLiteral("diskVolumes"), QCborArray{1});
        QVERIFY(!ZEKTMessageCodec::decodeMessage(rawFrame(ZEKTFrameType::systemStats, stats))
                     .error.isEmpty());

        QVERIFY(!ZEKTMessageCodec::decodeRequest(
                     rawFrame(ZEKTFrameType::fileEnd, {{"requestId", 1}, {"sha256", "short"}}))
                     .error.isEmpty());
        QVERIFY(
            !ZEKTMessageCodec::decodeRequest(
                 rawFrame(ZEKTFrameType::startStreaming,
                          {{"requestId", 1}, {"displayID", 0}, {"quality", 0.5}, {"frameRate", 0}}))
                 .error.isEmpty());
        QVERIFY(!ZEKTMessageCodec::decodeRequest(rawFrame(ZEKTFrameType::key, {{"requestId", 1},
                                                                               {"keyCode", 70000},
                                                                               {"pressed", true},
                                                                               {"modifiers", 0}}))
                     .error.isEmpty());
    }

    void identityIsMadeOnceAndReused()
    {
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("id"));
        const ZEKTIdentity first = ZEKTIdentity::loadOrCreate(folder);
        QVERIFY(!first.isNull());
        QCOMPARE(first.fingerprint().size(), 64);
        QCOMPARE(first.fingerprint(), first.fingerprint().toLower());
        const QString keyPath = folder + QLatin1Char('/') + ZEKTIdentity::keyFileName();
        const QFile::Permissions mode = QFile::permissions(keyPath);
        QVERIFY(mode & QFile::ReadOwner);
        QVERIFY(!(mode &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther)));
        QCOMPARE(ZEKTIdentity::loadOrCreate(folder).fingerprint(), first.fingerprint());

        // The same value the openssl tool computes from the certificate's public key.
        QProcess shell;
        shell.start(QStringLiteral("sh"),
                    {QStringLiteral("-c"),
                     QStringLiteral("openssl x509 -in '%1' -pubkey -noout | openssl pkey -pubin "
                                    "-outform DER | openssl dgst -sha256 -r")
                         .arg(folder + QLatin1Char('/') + ZEKTIdentity::certificateFileName())});
        if (shell.waitForFinished() && shell.exitCode() == 0)
            QCOMPARE(QString::fromLatin1(shell.readAllStandardOutput()).section(' ', 0, 0),
                     first.fingerprint());

        writeFile(folder + QLatin1Char('/') + ZEKTIdentity::certificateFileName(), "garbage");
        QVERIFY_THROWS_EXCEPTION(ZEKTError, ZEKTIdentity::loadOrCreate(folder));

        // Started together (a service and `--fingerprint`, say), every caller gets the one
        // identity that ends up on disk.
        const QString shared = dir.filePath(QStringLiteral("shared"));
        std::vector<QString> fingerprints(8);
        std::vector<std::thread> starters;
        for (QString &fingerprint : fingerprints)
            starters.emplace_back([&shared, &fingerprint] {
                try {
                    fingerprint = ZEKTIdentity::loadOrCreate(shared).fingerprint();
                } catch (const ZEKTError &error) {
                    fingerprint = error.description();
                }
            });
        for (std::thread &starter : starters)
            starter.join();
        const QString onDisk = ZEKTIdentity::loadOrCreate(shared).fingerprint();
        for (const QString &fingerprint : fingerprints)
            QCOMPARE(fingerprint, onDisk);
    }

    void knownAgentsFileKeepsEntriesAndRefusesDamage()
    {
        QTemporaryDir dir;
        ZEKTKnownAgents::setPathForTesting(dir.filePath(QStringLiteral("sub/known.json")));
        QCOMPARE(ZEKTKnownAgents::endpoint(QStringLiteral("::1"), 5905),
                 QStringLiteral("[::1]:5905"));
        QCOMPARE(ZEKTKnownAgents::endpoint(QStringLiteral("Host"), 1), QStringLiteral("host:1"));
        QVERIFY(!ZEKTKnownAgents::fingerprint(QStringLiteral("a:1")).fingerprint);
        QVERIFY(!ZEKTKnownAgents::store(QStringLiteral("a:1"), QStringLiteral("f1")));
        QVERIFY(!ZEKTKnownAgents::store(QStringLiteral("b:1"), QStringLiteral("f2")));
        QVERIFY(!ZEKTKnownAgents::store(QStringLiteral("a:1"), QStringLiteral("f3")));
        QCOMPARE(*ZEKTKnownAgents::fingerprint(QStringLiteral("a:1")).fingerprint,
                 QStringLiteral("f3"));
        QCOMPARE(*ZEKTKnownAgents::fingerprint(QStringLiteral("b:1")).fingerprint,
                 QStringLiteral("f2"));

        writeFile(ZEKTKnownAgents::path(), "{not json");
        QVERIFY(!ZEKTKnownAgents::fingerprint(QStringLiteral("a:1")).error.isEmpty());
        QVERIFY(ZEKTKnownAgents::store(QStringLiteral("a:1"), QStringLiteral("f4")));
        ZEKTKnownAgents::setPathForTesting({});
    }

    void backoffStartsAfterFiveFailuresAndDoubles()
    {
        ZEKT::resetProtocolTimingsForTesting();
        ZEKTLoginBackoff backoff;
        const QString a = QStringLiteral("10.0.0.1");
        qint64 now = 1000000;
        for (int i = 0; i < 4; ++i)
            backoff.recordFailure(a, now);
        QCOMPARE(backoff.remainingMs(a, now), 0);
        backoff.recordFailure(a, now);
        QCOMPARE(backoff.remainingMs(a, now), 10000);
        backoff.recordFailure(a, now);
        QCOMPARE(backoff.remainingMs(a, now), 20000);
        QCOMPARE(backoff.remainingMs(QStringLiteral("10.0.0.2"), now), 0);
        for (int i = 0; i < 20; ++i)
            backoff.recordFailure(a, now);
        QCOMPARE(backoff.remainingMs(a, now), 3600000);
        QCOMPARE(backoff.remainingMs(a, now + 3600000), 0);
        backoff.recordSuccess(a);
        backoff.recordFailure(a, now);
        QCOMPARE(backoff.remainingMs(a, now), 0);
    }
};

QTEST_GUILESS_MAIN(TestProtocolCodec)
#include "test_protocol_codec.moc"
