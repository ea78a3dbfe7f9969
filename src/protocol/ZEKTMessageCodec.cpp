#include "ZEKTMessageCodec.h"

#include "AuthenticationResponseMessage.h"
#include "DisconnectMessage.h"
#include "ErrorMessage.h"
#include "FileTransferResponseMessage.h"
#include "HandshakeResponseMessage.h"
#include "HeartbeatMessage.h"
#include "HeartbeatResponseMessage.h"
#include "ScreenCaptureMessage.h"
#include "SystemStatsMessage.h"
#include "ZEKTCommandResultMessage.h"
#include "ZEKTFileReadyMessage.h"
#include "ZEKTFrameType.h"

#include <QCborArray>
#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QtEndian>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

using Type = ZEKTFrameType;
using Kind = ZEKTRequest::Kind;

QByteArray frame(Type type, const QCborMap &body)
{
    return ZEKTFrame::encode(static_cast<quint16>(type), body);
}

// A decoded frame body. Byte strings (images, file chunks) are kept apart as plain
// QByteArrays so they are copied once out of the frame, not three times through QCborValue.
struct Body {
    QHash<QString, QCborValue> values;
    QHash<QString, QByteArray> bytes;
};

// Typed, validating access to one frame body; remembers the first problem.
class Fields {
public:
    Fields(Body body, const char *what) : m_body(std::move(body)), m_what(what) {}
    Fields(const QCborMap &map, const char *what) : m_what(what)
    {
        for (auto it = map.constBegin(); it != map.constEnd(); ++it)
            if (it.key().isString())
                m_body.values.insert(it.key().toString(), it.value());
    }

    QString error() const { return m_error; }

    qint64 integer(const char *key, qint64 min, qint64 max)
    {
        const QCborValue v = value(key);
        if (v.isUndefined())
            return 0;
        if (!v.isInteger() || v.toInteger() < min || v.toInteger() > max)
            return bad(key), 0;
        return v.toInteger();
    }
    quint32 u32(const char *key)
    {
        return static_cast<quint32>(integer(key, 0, std::numeric_limits<quint32>::max()));
    }
    quint64 u64(const char *key)
    {
        return static_cast<quint64>(integer(key, 0, std::numeric_limits<qint64>::max()));
    }
    double real(const char *key)
    {
        const QCborValue v = value(key);
        if (v.isUndefined())
            return 0.0;
        if (!v.isDouble() && !v.isInteger())
            return bad(key), 0.0;
        const double d = v.toDouble();
        if (!std::isfinite(d))
            return bad(key), 0.0;
        return d;
    }
    bool boolean(const char *key)
    {
        const QCborValue v = value(key);
        if (v.isUndefined())
            return false;
        if (!v.isBool())
            return bad(key), false;
        return v.toBool();
    }
    QString text(const char *key)
    {
        const QCborValue v = value(key);
        if (v.isUndefined())
            return {};
        if (!v.isString())
            return bad(key), QString();
        return v.toString();
    }
    QByteArray bytes(const char *key)
    {
        const auto blob = m_body.bytes.constFind(QLatin1String(key));
        if (blob != m_body.bytes.cend())
            return *blob;
        const QCborValue v = value(key);
        if (v.isUndefined())
            return {};
        if (!v.isByteArray())
            return bad(key), QByteArray();
        return v.toByteArray();
    }
    QCborArray array(const char *key)
    {
        const QCborValue v = value(key);
        if (v.isUndefined())
            return {};
        if (!v.isArray())
            return bad(key), QCborArray();
        return v.toArray();
    }

    // Optional fields: absent or null gives nullopt; present with a wrong type is an error.
    template <typename F> auto optional(const char *key, F get) -> std::optional<decltype(get())>
    {
        if (m_body.bytes.contains(QLatin1String(key)))
            return get();
        const QCborValue v = m_body.values.value(QLatin1String(key));
        if (v.isUndefined() || v.isNull())
            return std::nullopt;
        return get();
    }

private:
    QCborValue value(const char *key)
    {
        // A byte string where another type is expected: give the getter a byte value,
        // which fails its type check.
        if (m_body.bytes.contains(QLatin1String(key)))
            return QCborValue(QByteArray());
        const QCborValue v = m_body.values.value(QLatin1String(key));
        if (v.isUndefined())
            bad(key, "missing");
        return v;
    }
    void bad(const char *key, const char *problem = "of the wrong type or out of range")
    {
        if (m_error.isEmpty())
            m_error = QStringLiteral("Malformed %1 frame: field \"%2\" is %3")
                          .arg(QLatin1String(m_what), QLatin1String(key), QLatin1String(problem));
    }

    Body m_body;
    const char *m_what;
    QString m_error;
};

// Reads a text or byte string, however it is chunked.
template <typename T, typename Read> bool readString(QCborStreamReader &reader, T *out, Read read)
{
    auto chunk = (reader.*read)();
    while (chunk.status == QCborStreamReader::Ok) {
        *out += chunk.data;
        chunk = (reader.*read)();
    }
    return chunk.status == QCborStreamReader::EndOfString;
}

// The whole body must be exactly one CBOR map with text keys (an empty body counts as an
// empty map).
std::optional<Body> parseBody(const QByteArray &data, QString *error)
{
    Body body;
    if (data.isEmpty())
        return body;
    QCborStreamReader reader(data);
    auto fail = [&](const QString &why) {
        *error = QStringLiteral("Malformed frame body: %1").arg(why);
        return std::nullopt;
    };
    if (!reader.isMap() || !reader.enterContainer())
        return fail(reader.lastError() != QCborError::NoError ? reader.lastError().toString()
                                                              : QStringLiteral("not a CBOR map"));
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        QString key;
        if (!reader.isString() || !readString(reader, &key, &QCborStreamReader::readString))
            return fail(QStringLiteral("map keys must be text"));
        if (reader.isByteArray()) {
            QByteArray value;
            if (!readString(reader, &value, &QCborStreamReader::readByteArray))
                return fail(reader.lastError().toString());
            body.values.remove(key);
            body.bytes.insert(key, value);
        } else {
            const QCborValue value = QCborValue::fromCbor(reader);
            if (reader.lastError() != QCborError::NoError)
                break;
            body.bytes.remove(key);
            body.values.insert(key, value);
        }
    }
    if (reader.lastError() != QCborError::NoError || !reader.leaveContainer())
        return fail(reader.lastError().toString());
    if (reader.currentOffset() != data.size())
        return fail(QStringLiteral("trailing bytes after the CBOR map"));
    return body;
}

QCborMap encodeStats(const SystemStatsMessage &s)
{
    QCborMap m;
    m.insert(QStringLiteral("totalMemory"), static_cast<qint64>(s.totalMemory));
    m.insert(QStringLiteral("freeMemory"), static_cast<qint64>(s.freeMemory));
    m.insert(QStringLiteral("totalDiskSpace"), static_cast<qint64>(s.totalDiskSpace));
    m.insert(QStringLiteral("freeDiskSpace"), static_cast<qint64>(s.freeDiskSpace));
    m.insert(QStringLiteral("osVersion"), s.osVersion);
    m.insert(QStringLiteral("macModel"), s.macModel);
    m.insert(QStringLiteral("cpuUsage"), s.cpuUsage);
    m.insert(QStringLiteral("activeProcess"), s.activeProcess);
    auto put = [&m](const char *key, const auto &opt) {
        if (opt)
            m.insert(QLatin1String(key), QCborValue(*opt));
    };
    if (s.uptimeSeconds)
        m.insert(QStringLiteral("uptimeSeconds"), static_cast<qint64>(*s.uptimeSeconds));
    put("agentVersion", s.agentVersion);
    put("screenCaptureAuthorized", s.screenCaptureAuthorized);
    put("accessibilityAuthorized", s.accessibilityAuthorized);
    put("screenLocked", s.screenLocked);
    put("primaryIPAddress", s.primaryIPAddress);
    put("loggedInUser", s.loggedInUser);
    put("networkName", s.networkName);
    if (s.displayCount)
        m.insert(QStringLiteral("displayCount"), static_cast<qint64>(*s.displayCount));
    put("mainDisplayResolution", s.mainDisplayResolution);
    put("serialNumber", s.serialNumber);
    put("hardwareUUID", s.hardwareUUID);
    put("fileVaultEnabled", s.fileVaultEnabled);
    put("sipEnabled", s.sipEnabled);
    put("gatekeeperEnabled", s.gatekeeperEnabled);
    put("mdmEnrolled", s.mdmEnrolled);
    if (s.lastBootTime)
        m.insert(QStringLiteral("lastBootTime"), s.lastBootTime->toMSecsSinceEpoch() / 1000.0);
    put("lastSleepCause", s.lastSleepCause);
    put("lastWakeCause", s.lastWakeCause);
    if (s.diskVolumes) {
        QCborArray volumes;
        for (const ZEKTDiskVolumeInfo &v : *s.diskVolumes) {
            QCborMap vm;
            vm.insert(QStringLiteral("name"), v.name);
            vm.insert(QStringLiteral("path"), v.path);
            vm.insert(QStringLiteral("totalBytes"), static_cast<qint64>(v.totalBytes));
            vm.insert(QStringLiteral("freeBytes"), static_cast<qint64>(v.freeBytes));
            volumes.append(vm);
        }
        m.insert(QStringLiteral("diskVolumes"), volumes);
    }
    return m;
}

std::shared_ptr<SystemStatsMessage> decodeStats(Fields &f)
{
    auto s = std::make_shared<SystemStatsMessage>();
    s->totalMemory = f.u64("totalMemory");
    s->freeMemory = f.u64("freeMemory");
    s->totalDiskSpace = f.u64("totalDiskSpace");
    s->freeDiskSpace = f.u64("freeDiskSpace");
    s->osVersion = f.text("osVersion");
    s->macModel = f.text("macModel");
    s->cpuUsage = f.real("cpuUsage");
    s->activeProcess = f.text("activeProcess");
    s->uptimeSeconds = f.optional("uptimeSeconds", [&] { return f.u64("uptimeSeconds"); });
    auto str = [&f](const char *k) { return f.optional(k, [&] { return f.text(k); }); };
    auto flag = [&f](const char *k) { return f.optional(k, [&] { return f.boolean(k); }); };
    s->agentVersion = str("agentVersion");
    s->screenCaptureAuthorized = flag("screenCaptureAuthorized");
    s->accessibilityAuthorized = flag("accessibilityAuthorized");
    s->screenLocked = flag("screenLocked");
    s->primaryIPAddress = str("primaryIPAddress");
    s->loggedInUser = str("loggedInUser");
    s->networkName = str("networkName");
    s->displayCount = f.optional("displayCount", [&] { return f.u32("displayCount"); });
    s->mainDisplayResolution = str("mainDisplayResolution");
    s->serialNumber = str("serialNumber");
    s->hardwareUUID = str("hardwareUUID");
    s->fileVaultEnabled = flag("fileVaultEnabled");
    s->sipEnabled = flag("sipEnabled");
    s->gatekeeperEnabled = flag("gatekeeperEnabled");
    s->mdmEnrolled = flag("mdmEnrolled");
    s->lastBootTime = f.optional("lastBootTime", [&] {
        const double seconds = f.real("lastBootTime");
        return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::llround(seconds * 1000.0)),
                                              Qt::UTC);
    });
    s->lastSleepCause = str("lastSleepCause");
    s->lastWakeCause = str("lastWakeCause");
    s->diskVolumes = f.optional("diskVolumes", [&] {
        QList<ZEKTDiskVolumeInfo> volumes;
        for (const QCborValue &item : f.array("diskVolumes")) {
            Fields vf(item.toMap(), "disk volume");
            if (!item.isMap())
                vf.text("name"); // records the problem
            ZEKTDiskVolumeInfo v;
            v.name = vf.text("name");
            v.path = vf.text("path");
            v.totalBytes = vf.u64("totalBytes");
            v.freeBytes = vf.u64("freeBytes");
            if (!vf.error().isEmpty()) {
                f.text("diskVolumes"); // turn the volume's problem into the frame's
                break;
            }
            volumes.append(v);
        }
        return volumes;
    });
    return s;
}

} // namespace

QByteArray ZEKTMessageCodec::encodeMessage(const ZEKTMessage &message)
{
    QCborMap m;
    switch (message.type()) {
    case ZEKTMessage::Type::heartbeat:
        return frame(Type::heartbeat, m);
    case ZEKTMessage::Type::heartbeatResponse:
        return frame(Type::heartbeatResponse, m);
    case ZEKTMessage::Type::disconnect: {
        const auto &d = static_cast<const DisconnectMessage &>(message);
        m.insert(QStringLiteral("reason"), d.reason);
        return frame(Type::disconnect, m);
    }
    case ZEKTMessage::Type::handshakeResponse: {
        const auto &h = static_cast<const HandshakeResponseMessage &>(message);
        m.insert(QStringLiteral("protocolVersion"), static_cast<qint64>(h.protocolVersion));
        m.insert(QStringLiteral("agentVersion"), h.agentVersion);
        return frame(Type::handshakeResponse, m);
    }
    case ZEKTMessage::Type::authenticationResponse: {
        const auto &a = static_cast<const AuthenticationResponseMessage &>(message);
        m.insert(QStringLiteral("success"), a.success);
        m.insert(QStringLiteral("reason"), a.reason);
        return frame(Type::authenticationResponse, m);
    }
    case ZEKTMessage::Type::commandResult: {
        const auto &r = static_cast<const ZEKTCommandResultMessage &>(message);
        m.insert(QStringLiteral("requestId"), static_cast<qint64>(r.requestId));
        m.insert(QStringLiteral("success"), r.success);
        m.insert(QStringLiteral("error"), r.error);
        return frame(Type::commandResult, m);
    }
    case ZEKTMessage::Type::screenCapture: {
        const auto *s = static_cast<const ScreenCaptureMessage *>(&message);
        return ZEKTFrame::encodeWith(static_cast<quint16>(Type::screenImage),
                                     s->imageData.size() + 160, [s](QCborStreamWriter &w) {
                                         w.startMap(s->sequenceNumber ? 8 : 7);
                                         w.append(QLatin1String("displayID"));
                                         w.append(static_cast<qint64>(s->displayID));
                                         w.append(QLatin1String("imageData"));
                                         w.append(s->imageData);
                                         w.append(QLatin1String("imageFormat"));
                                         w.append(s->imageFormat);
                                         w.append(QLatin1String("quality"));
                                         w.append(static_cast<double>(s->quality));
                                         w.append(QLatin1String("frameNumber"));
                                         w.append(static_cast<qint64>(s->frameNumber));
                                         if (s->sequenceNumber) {
                                             w.append(QLatin1String("sequenceNumber"));
                                             w.append(static_cast<qint64>(*s->sequenceNumber));
                                         }
                                         w.append(QLatin1String("displayWidth"));
                                         w.append(static_cast<qint64>(s->displayWidth));
                                         w.append(QLatin1String("displayHeight"));
                                         w.append(static_cast<qint64>(s->displayHeight));
                                         w.endMap();
                                     });
    }
    case ZEKTMessage::Type::systemStats:
        return frame(Type::systemStats,
                     encodeStats(static_cast<const SystemStatsMessage &>(message)));
    case ZEKTMessage::Type::error:
        m.insert(QStringLiteral("errorMessage"),
                 static_cast<const ErrorMessage &>(message).errorMessage);
        return frame(Type::error, m);
    case ZEKTMessage::Type::fileReady: {
        const auto &r = static_cast<const ZEKTFileReadyMessage &>(message);
        m.insert(QStringLiteral("transferId"), static_cast<qint64>(r.transferId));
        m.insert(QStringLiteral("accepted"), r.accepted);
        m.insert(QStringLiteral("reason"), r.reason);
        return frame(Type::fileReady, m);
    }
    case ZEKTMessage::Type::fileTransferResponse: {
        const auto &r = static_cast<const FileTransferResponseMessage &>(message);
        m.insert(QStringLiteral("success"), r.success);
        m.insert(QStringLiteral("message"), r.message);
        return frame(Type::fileResponse, m);
    }
    }
    Q_ASSERT_X(false, "ZEKTMessageCodec", "message type without a wire form");
    return {};
}

ZEKTMessageCodec::Decoded<ZEKTMessagePtr> ZEKTMessageCodec::decodeMessage(const ZEKTFrame &in)
{
    Decoded<ZEKTMessagePtr> out;
    const auto type = static_cast<Type>(in.type);
    switch (type) {
    case Type::heartbeat:
    case Type::heartbeatResponse:
    case Type::disconnect:
    case Type::handshakeResponse:
    case Type::authenticationResponse:
    case Type::commandResult:
    case Type::screenImage:
    case Type::systemStats:
    case Type::error:
    case Type::fileReady:
    case Type::fileResponse:
        break;
    default:
        out.skipped = true;
        return out;
    }
    std::optional<Body> body = parseBody(in.body, &out.error);
    if (!body)
        return out;
    Fields f(std::move(*body), "agent");
    switch (type) {
    case Type::heartbeat:
        out.value = std::make_shared<HeartbeatMessage>();
        break;
    case Type::heartbeatResponse:
        out.value = std::make_shared<HeartbeatResponseMessage>();
        break;
    case Type::disconnect:
        out.value = std::make_shared<DisconnectMessage>(f.text("reason"));
        break;
    case Type::handshakeResponse: {
        const quint32 version = f.u32("protocolVersion");
        out.value = std::make_shared<HandshakeResponseMessage>(version, f.text("agentVersion"));
        break;
    }
    case Type::authenticationResponse: {
        const bool success = f.boolean("success");
        out.value = std::make_shared<AuthenticationResponseMessage>(success, f.text("reason"));
        break;
    }
    case Type::commandResult: {
        const quint64 id = f.u64("requestId");
        const bool success = f.boolean("success");
        out.value = std::make_shared<ZEKTCommandResultMessage>(id, success, f.text("error"));
        break;
    }
    case Type::screenImage: {
        const quint32 display = f.u32("displayID");
        QByteArray data = f.bytes("imageData");
        const QString format = f.text("imageFormat");
        const double quality = f.real("quality");
        const quint64 number = f.u64("frameNumber");
        const auto sequence = f.optional("sequenceNumber", [&] { return f.u32("sequenceNumber"); });
        const quint32 width = f.u32("displayWidth");
        const quint32 height = f.u32("displayHeight");
        out.value = std::make_shared<ScreenCaptureMessage>(display, std::move(data), format,
                                                           static_cast<float>(quality), number,
                                                           sequence, width, height);
        break;
    }
    case Type::systemStats:
        out.value = decodeStats(f);
        break;
    case Type::error:
        out.value = std::make_shared<ErrorMessage>(f.text("errorMessage"));
        break;
    case Type::fileReady: {
        const quint64 id = f.u64("transferId");
        const bool accepted = f.boolean("accepted");
        out.value = std::make_shared<ZEKTFileReadyMessage>(id, accepted, f.text("reason"));
        break;
    }
    case Type::fileResponse: {
        const bool success = f.boolean("success");
        out.value = std::make_shared<FileTransferResponseMessage>(success, f.text("message"));
        break;
    }
    default:
        break;
    }
    if (!f.error().isEmpty()) {
        out.error = f.error();
        out.value.reset();
    }
    return out;
}

QByteArray ZEKTMessageCodec::encodeRequest(const ZEKTRequest &r)
{
    QCborMap m;
    auto id = [&] { m.insert(QStringLiteral("requestId"), static_cast<qint64>(r.requestId)); };
    switch (r.kind) {
    case Kind::hello: {
        QCborArray versions;
        for (quint32 v : r.protocolVersions)
            versions.append(static_cast<qint64>(v));
        m.insert(QStringLiteral("protocolVersions"), versions);
        m.insert(QStringLiteral("clientName"), r.clientName);
        return frame(Type::hello, m);
    }
    case Kind::authenticate:
        m.insert(QStringLiteral("username"), r.username);
        m.insert(QStringLiteral("password"), r.password);
        return frame(Type::authenticate, m);
    case Kind::heartbeat:
        return frame(Type::heartbeat, m);
    case Kind::heartbeatResponse:
        return frame(Type::heartbeatResponse, m);
    case Kind::disconnect:
        m.insert(QStringLiteral("reason"), r.reason);
        return frame(Type::disconnect, m);
    case Kind::screenCapture:
        id();
        m.insert(QStringLiteral("displayID"), static_cast<qint64>(r.displayID));
        return frame(Type::screenCapture, m);
    case Kind::startStreaming:
        id();
        m.insert(QStringLiteral("displayID"), static_cast<qint64>(r.displayID));
        m.insert(QStringLiteral("quality"), static_cast<double>(r.quality));
        m.insert(QStringLiteral("frameRate"), r.frameRate);
        return frame(Type::startStreaming, m);
    case Kind::stopStreaming:
        id();
        return frame(Type::stopStreaming, m);
    case Kind::frameAck:
        m.insert(QStringLiteral("frameNumber"), static_cast<qint64>(r.frameNumber));
        return frame(Type::frameAck, m);
    case Kind::mouseButton:
        id();
        m.insert(QStringLiteral("x"), r.x);
        m.insert(QStringLiteral("y"), r.y);
        m.insert(QStringLiteral("button"), r.button);
        m.insert(QStringLiteral("pressed"), r.pressed);
        return frame(Type::mouseButton, m);
    case Kind::mouseMove:
        id();
        m.insert(QStringLiteral("x"), r.x);
        m.insert(QStringLiteral("y"), r.y);
        m.insert(QStringLiteral("deltaX"), r.deltaX);
        m.insert(QStringLiteral("deltaY"), r.deltaY);
        return frame(Type::mouseMove, m);
    case Kind::key:
        id();
        m.insert(QStringLiteral("keyCode"), r.keyCode);
        m.insert(QStringLiteral("pressed"), r.pressed);
        m.insert(QStringLiteral("modifiers"), static_cast<qint64>(r.modifiers));
        return frame(Type::key, m);
    case Kind::fileBegin:
        id();
        m.insert(QStringLiteral("fileName"), r.fileName);
        m.insert(QStringLiteral("fileSize"), r.fileSize);
        return frame(Type::fileBegin, m);
    case Kind::fileChunk:
        return ZEKTFrame::encodeWith(static_cast<quint16>(Type::fileChunk), r.data.size() + 32,
                                     [&r](QCborStreamWriter &w) {
                                         w.startMap(2);
                                         w.append(QLatin1String("requestId"));
                                         w.append(static_cast<qint64>(r.requestId));
                                         w.append(QLatin1String("data"));
                                         w.append(r.data);
                                         w.endMap();
                                     });
    case Kind::fileEnd:
        id();
        m.insert(QStringLiteral("sha256"), r.sha256);
        return frame(Type::fileEnd, m);
    }
    return {};
}

ZEKTMessageCodec::Decoded<ZEKTRequest> ZEKTMessageCodec::decodeRequest(const ZEKTFrame &in)
{
    Decoded<ZEKTRequest> out;
    ZEKTRequest &r = out.value;
    const auto type = static_cast<Type>(in.type);
    switch (type) {
    case Type::hello:
        r.kind = Kind::hello;
        break;
    case Type::authenticate:
        r.kind = Kind::authenticate;
        break;
    case Type::heartbeat:
        r.kind = Kind::heartbeat;
        break;
    case Type::heartbeatResponse:
        r.kind = Kind::heartbeatResponse;
        break;
    case Type::disconnect:
        r.kind = Kind::disconnect;
        break;
    case Type::screenCapture:
        r.kind = Kind::screenCapture;
        break;
    case Type::startStreaming:
        r.kind = Kind::startStreaming;
        break;
    case Type::stopStreaming:
        r.kind = Kind::stopStreaming;
        break;
    case Type::frameAck:
        r.kind = Kind::frameAck;
        break;
    case Type::mouseButton:
        r.kind = Kind::mouseButton;
        break;
    case Type::mouseMove:
        r.kind = Kind::mouseMove;
        break;
    case Type::key:
        r.kind = Kind::key;
        break;
    case Type::fileBegin:
        r.kind = Kind::fileBegin;
        break;
    case Type::fileChunk:
        r.kind = Kind::fileChunk;
        break;
    case Type::fileEnd:
        r.kind = Kind::fileEnd;
        break;
    default:
        out.skipped = true;
        return out;
    }
    std::optional<Body> body = parseBody(in.body, &out.error);
    if (!body)
        return out;
    Fields f(std::move(*body), "console");
    const bool hasId = type != Type::hello && type != Type::authenticate &&
                       type != Type::heartbeat && type != Type::heartbeatResponse &&
                       type != Type::disconnect && type != Type::frameAck;
    if (hasId)
        r.requestId = f.u64("requestId");
    switch (r.kind) {
    case Kind::hello:
        for (const QCborValue &v : f.array("protocolVersions")) {
            if (!v.isInteger() || v.toInteger() < 0 || v.toInteger() > 0xffffffffLL) {
                out.error = QStringLiteral("Malformed console frame: bad protocol version");
                return out;
            }
            r.protocolVersions.append(static_cast<quint32>(v.toInteger()));
        }
        r.clientName = f.text("clientName");
        break;
    case Kind::authenticate:
        r.username = f.text("username");
        r.password = f.text("password");
        break;
    case Kind::heartbeat:
    case Kind::heartbeatResponse:
    case Kind::stopStreaming:
        break;
    case Kind::disconnect:
        r.reason = f.text("reason");
        break;
    case Kind::screenCapture:
        r.displayID = f.u32("displayID");
        break;
    case Kind::startStreaming:
        r.displayID = f.u32("displayID");
        r.quality = static_cast<float>(f.real("quality"));
        r.frameRate = f.real("frameRate");
        if (f.error().isEmpty() && (r.quality < 0.0f || r.quality > 1.0f || r.frameRate <= 0.0))
            out.error = QStringLiteral("Malformed console frame: streaming quality must be 0..1 "
                                       "and the frame rate positive");
        break;
    case Kind::frameAck:
        r.frameNumber = f.u64("frameNumber");
        break;
    case Kind::mouseButton:
        r.x = f.real("x");
        r.y = f.real("y");
        r.button = static_cast<int>(
            f.integer("button", std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
        r.pressed = f.boolean("pressed");
        break;
    case Kind::mouseMove:
        r.x = f.real("x");
        r.y = f.real("y");
        r.deltaX = f.real("deltaX");
        r.deltaY = f.real("deltaY");
        break;
    case Kind::key:
        r.keyCode = static_cast<quint16>(f.integer("keyCode", 0, 0xffff));
        r.pressed = f.boolean("pressed");
        r.modifiers = f.u32("modifiers");
        break;
    case Kind::fileBegin:
        r.fileName = f.text("fileName");
        r.fileSize = f.integer("fileSize", 0, std::numeric_limits<qint64>::max());
        break;
    case Kind::fileChunk:
        r.data = f.bytes("data");
        break;
    case Kind::fileEnd:
        r.sha256 = f.bytes("sha256");
        if (f.error().isEmpty() && r.sha256.size() != 32)
            out.error = QStringLiteral("Malformed console frame: the SHA-256 is not 32 bytes");
        break;
    }
    if (out.error.isEmpty())
        out.error = f.error();
    return out;
}

ZEKTMessageCodec::ChunkFrame ZEKTMessageCodec::fileChunkFrame(quint64 requestId, qsizetype size)
{
    ChunkFrame out;
    QByteArray &f = out.frame;
    f.reserve(ZEKTFrame::headerSize + size + 32);
    f.resize(ZEKTFrame::headerSize);
    f += '\xa2'; // map of two
    f += '\x69';
    f += "requestId";
    f += QCborValue(static_cast<qint64>(requestId)).toCbor();
    f += '\x64';
    f += "data";
    // Byte string header (major type 2) for `size`, which is below 4 GiB.
    if (size < 24) {
        f += static_cast<char>(0x40 + size);
    } else if (size < 0x100) {
        f += '\x58';
        f += static_cast<char>(size);
    } else if (size < 0x10000) {
        f += '\x59';
        const qsizetype at = f.size();
        f.resize(at + 2);
        qToBigEndian<quint16>(static_cast<quint16>(size), f.data() + at);
    } else {
        f += '\x5a';
        const qsizetype at = f.size();
        f.resize(at + 4);
        qToBigEndian<quint32>(static_cast<quint32>(size), f.data() + at);
    }
    out.dataOffset = f.size();
    f.resize(out.dataOffset + size);
    qToBigEndian<quint32>(static_cast<quint32>(f.size() - 4), f.data());
    qToBigEndian<quint16>(static_cast<quint16>(Type::fileChunk), f.data() + 4);
    return out;
}

std::optional<ZEKTRequest> ZEKTMessageCodec::takeFileChunk(ZEKTFrame &frame)
{
    if (frame.type != static_cast<quint16>(Type::fileChunk))
        return std::nullopt;
    const auto *b = reinterpret_cast<const uchar *>(frame.body.constData());
    const qsizetype size = frame.body.size();
    qsizetype at = 0;
    auto expect = [&](const char *bytes, qsizetype n) {
        if (size - at < n || memcmp(b + at, bytes, static_cast<size_t>(n)) != 0)
            return false;
        at += n;
        return true;
    };
    // Reads a CBOR unsigned argument after a header byte of major type `major`.
    auto argument = [&](uchar major, quint64 *value) {
        if (at >= size || (b[at] >> 5) != major)
            return false;
        const uchar info = b[at++] & 0x1f;
        if (info < 24) {
            *value = info;
            return true;
        }
        const int length = info == 24 ? 1 : info == 25 ? 2 : info == 26 ? 4 : info == 27 ? 8 : 0;
        if (length == 0 || size - at < length)
            return false;
        *value = 0;
        for (int i = 0; i < length; ++i)
            *value = (*value << 8) | b[at++];
        return true;
    };
    quint64 requestId = 0;
    quint64 dataLength = 0;
    if (!expect("\xa2\x69requestId", 11) || !argument(0, &requestId) ||
        requestId > static_cast<quint64>(std::numeric_limits<qint64>::max()) ||
        !expect("\x64"
                "data",
                5) ||
        !argument(2, &dataLength) || dataLength != static_cast<quint64>(size - at))
        return std::nullopt;
    ZEKTRequest request;
    request.kind = Kind::fileChunk;
    request.requestId = requestId;
    request.data = std::move(frame.body);
    frame.body = QByteArray();
    request.data.remove(0, at); // drops the prefix without moving the data
    return request;
}
