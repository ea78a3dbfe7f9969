#include "ComputerJson.h"

#include "UuidText.h"

#include <cmath>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace ComputerJson {
namespace {

// Seconds between 1970-01-01 and 2001-01-01.
constexpr double referenceOffset = 978307200.0;

struct CodingError {
    QString message;
};

std::string str(const QString &s)
{
    return s.toStdString();
}
QString qstr(const std::string &s)
{
    return QString::fromStdString(s);
}

double finiteOrThrow(double value, const char *key)
{
    if (!std::isfinite(value))
        throw CodingError{QStringLiteral("%1 is not a finite number").arg(QLatin1String(key))};
    return value;
}

double dateOrThrow(const QDateTime &time, const char *key)
{
    if (!time.isValid())
        throw CodingError{QStringLiteral("%1 is not a valid date").arg(QLatin1String(key))};
    return toReferenceSeconds(time);
}

template <typename T> void putOptional(Json &object, const char *key, const std::optional<T> &value)
{
    if (!value)
        return;
    if constexpr (std::is_same_v<T, QString>)
        object[key] = str(*value);
    else
        object[key] = *value;
}

Json encodeStats(const SystemStats &s)
{
    Json o = Json::object();
    o["totalMemory"] = s.totalMemory;
    o["freeMemory"] = s.freeMemory;
    o["totalDiskSpace"] = s.totalDiskSpace;
    o["freeDiskSpace"] = s.freeDiskSpace;
    o["osVersion"] = str(s.osVersion);
    o["macModel"] = str(s.macModel);
    if (s.cpuUsage)
        o["cpuUsage"] = finiteOrThrow(*s.cpuUsage, "cpuUsage");
    putOptional(o, "activeProcess", s.activeProcess);
    putOptional(o, "uptimeSeconds", s.uptimeSeconds);
    putOptional(o, "agentVersion", s.agentVersion);
    putOptional(o, "screenCaptureAuthorized", s.screenCaptureAuthorized);
    putOptional(o, "accessibilityAuthorized", s.accessibilityAuthorized);
    putOptional(o, "screenLocked", s.screenLocked);
    putOptional(o, "primaryIPAddress", s.primaryIPAddress);
    putOptional(o, "loggedInUser", s.loggedInUser);
    putOptional(o, "networkName", s.networkName);
    putOptional(o, "displayCount", s.displayCount);
    putOptional(o, "mainDisplayResolution", s.mainDisplayResolution);
    putOptional(o, "serialNumber", s.serialNumber);
    putOptional(o, "hardwareUUID", s.hardwareUUID);
    putOptional(o, "fileVaultEnabled", s.fileVaultEnabled);
    putOptional(o, "sipEnabled", s.sipEnabled);
    putOptional(o, "gatekeeperEnabled", s.gatekeeperEnabled);
    putOptional(o, "mdmEnrolled", s.mdmEnrolled);
    if (s.lastBootTime)
        o["lastBootTime"] = dateOrThrow(*s.lastBootTime, "lastBootTime");
    putOptional(o, "lastSleepCause", s.lastSleepCause);
    putOptional(o, "lastWakeCause", s.lastWakeCause);
    if (s.diskVolumes) {
        Json volumes = Json::array();
        for (const DiskVolumeInfo &v : *s.diskVolumes) {
            Json vo = Json::object();
            vo["name"] = str(v.name);
            vo["path"] = str(v.path);
            vo["totalBytes"] = v.totalBytes;
            vo["freeBytes"] = v.freeBytes;
            volumes.push_back(std::move(vo));
        }
        o["diskVolumes"] = std::move(volumes);
    }
    return o;
}

Json encodeComputer(const RemoteComputer &c)
{
    Json o = Json::object();
    o["id"] = str(UuidText::format(c.id));
    putOptional(o, "name", c.name);
    o["host"] = str(c.host);
    o["port"] = c.port;
    o["username"] = str(c.username);
    o["password"] = str(c.password);
    putOptional(o, "description", c.description);
    Json tags = Json::array();
    for (const QString &tag : c.tags)
        tags.push_back(str(tag));
    o["tags"] = std::move(tags);
    o["isConnected"] = c.isConnected;
    o["isConnecting"] = c.isConnecting;
    if (c.lastConnected)
        o["lastConnected"] = dateOrThrow(*c.lastConnected, "lastConnected");
    if (c.thumbnailImage)
        o["thumbnailImage"] = c.thumbnailImage->toBase64().toStdString();
    putOptional(o, "lastError", c.lastError);
    if (c.systemStats)
        o["systemStats"] = encodeStats(*c.systemStats);
    return o;
}

// Reading side. `present` treats null as absent, as the lenient and optional fields do.
const Json *present(const Json &object, const char *key)
{
    auto it = object.find(key);
    if (it == object.end() || it->is_null())
        return nullptr;
    return &*it;
}

[[noreturn]] void typeError(const char *key, const char *expected)
{
    throw CodingError{
        QStringLiteral("\"%1\" is not %2").arg(QLatin1String(key), QLatin1String(expected))};
}

QString readString(const Json &v, const char *key)
{
    if (!v.is_string())
        typeError(key, "a string");
    return qstr(v.get_ref<const std::string &>());
}

bool readBool(const Json &v, const char *key)
{
    if (!v.is_boolean())
        typeError(key, "a boolean");
    return v.get<bool>();
}

quint64 readUnsigned(const Json &v, const char *key, quint64 max)
{
    // Negative and fractional numbers are type errors, not values to round.
    if (!v.is_number_unsigned())
        typeError(key, "a non-negative integer");
    const quint64 value = v.get<quint64>();
    if (value > max)
        throw CodingError{QStringLiteral("\"%1\" is out of range").arg(QLatin1String(key))};
    return value;
}

double readDouble(const Json &v, const char *key)
{
    if (!v.is_number())
        typeError(key, "a number");
    return v.get<double>();
}

QDateTime readDate(const Json &v, const char *key)
{
    auto date = fromReferenceSeconds(readDouble(v, key));
    if (!date)
        throw CodingError{QStringLiteral("\"%1\" is not a valid date").arg(QLatin1String(key))};
    return *date;
}

const Json &required(const Json &object, const char *key)
{
    const Json *v = present(object, key);
    if (!v)
        throw CodingError{QStringLiteral("missing \"%1\"").arg(QLatin1String(key))};
    return *v;
}

template <typename T, typename Reader>
std::optional<T> optionalField(const Json &object, const char *key, Reader reader)
{
    if (const Json *v = present(object, key))
        return reader(*v, key);
    return std::nullopt;
}

void requireObject(const Json &v, const char *what)
{
    if (!v.is_object())
        typeError(what, "an object");
}

DiskVolumeInfo decodeVolume(const Json &o)
{
    requireObject(o, "diskVolumes");
    DiskVolumeInfo v;
    v.name = readString(required(o, "name"), "name");
    v.path = readString(required(o, "path"), "path");
    v.totalBytes = readUnsigned(required(o, "totalBytes"), "totalBytes", UINT64_MAX);
    v.freeBytes = readUnsigned(required(o, "freeBytes"), "freeBytes", UINT64_MAX);
    return v;
}

SystemStats decodeStats(const Json &o)
{
    requireObject(o, "systemStats");
    const auto u64 = [](const Json &v, const char *k) { return readUnsigned(v, k, UINT64_MAX); };
    const auto u32 = [](const Json &v, const char *k) {
        return static_cast<quint32>(readUnsigned(v, k, UINT32_MAX));
    };
    SystemStats s;
    s.totalMemory = u64(required(o, "totalMemory"), "totalMemory");
    s.freeMemory = u64(required(o, "freeMemory"), "freeMemory");
    s.totalDiskSpace = u64(required(o, "totalDiskSpace"), "totalDiskSpace");
    s.freeDiskSpace = u64(required(o, "freeDiskSpace"), "freeDiskSpace");
    s.osVersion = readString(required(o, "osVersion"), "osVersion");
    s.macModel = readString(required(o, "macModel"), "macModel");
    s.cpuUsage = optionalField<double>(o, "cpuUsage", readDouble);
    s.activeProcess = optionalField<QString>(o, "activeProcess", readString);
    s.uptimeSeconds = optionalField<quint64>(o, "uptimeSeconds", u64);
    s.agentVersion = optionalField<QString>(o, "agentVersion", readString);
    s.screenCaptureAuthorized = optionalField<bool>(o, "screenCaptureAuthorized", readBool);
    s.accessibilityAuthorized = optionalField<bool>(o, "accessibilityAuthorized", readBool);
    s.screenLocked = optionalField<bool>(o, "screenLocked", readBool);
    s.primaryIPAddress = optionalField<QString>(o, "primaryIPAddress", readString);
    s.loggedInUser = optionalField<QString>(o, "loggedInUser", readString);
    s.networkName = optionalField<QString>(o, "networkName", readString);
    s.displayCount = optionalField<quint32>(o, "displayCount", u32);
    s.mainDisplayResolution = optionalField<QString>(o, "mainDisplayResolution", readString);
    s.serialNumber = optionalField<QString>(o, "serialNumber", readString);
    s.hardwareUUID = optionalField<QString>(o, "hardwareUUID", readString);
    s.fileVaultEnabled = optionalField<bool>(o, "fileVaultEnabled", readBool);
    s.sipEnabled = optionalField<bool>(o, "sipEnabled", readBool);
    s.gatekeeperEnabled = optionalField<bool>(o, "gatekeeperEnabled", readBool);
    s.mdmEnrolled = optionalField<bool>(o, "mdmEnrolled", readBool);
    s.lastBootTime = optionalField<QDateTime>(o, "lastBootTime", readDate);
    s.lastSleepCause = optionalField<QString>(o, "lastSleepCause", readString);
    s.lastWakeCause = optionalField<QString>(o, "lastWakeCause", readString);
    if (const Json *volumes = present(o, "diskVolumes")) {
        if (!volumes->is_array())
            typeError("diskVolumes", "an array");
        QList<DiskVolumeInfo> list;
        list.reserve(qsizetype(volumes->size()));
        for (const Json &v : *volumes)
            list.append(decodeVolume(v));
        s.diskVolumes = std::move(list);
    }
    return s;
}

RemoteComputer decodeComputer(const Json &o)
{
    requireObject(o, "record");
    RemoteComputer c;
    if (const Json *id = present(o, "id")) {
        auto parsed = UuidText::parse(readString(*id, "id"));
        if (!parsed)
            typeError("id", "a UUID");
        c.id = *parsed;
    }
    c.name = optionalField<QString>(o, "name", readString);
    const Json *host = present(o, "host");
    if (!host)
        throw CodingError{QStringLiteral("missing \"host\"")};
    c.host = readString(*host, "host");
    if (const Json *port = present(o, "port"))
        c.port = static_cast<quint16>(readUnsigned(*port, "port", 65535));
    if (const Json *v = present(o, "username"))
        c.username = readString(*v, "username");
    if (const Json *v = present(o, "password"))
        c.password = readString(*v, "password");
    c.description = optionalField<QString>(o, "description", readString);
    if (const Json *tags = present(o, "tags")) {
        if (!tags->is_array())
            typeError("tags", "an array");
        for (const Json &tag : *tags)
            c.tags.append(readString(tag, "tags"));
    }
    if (const Json *v = present(o, "isConnected"))
        c.isConnected = readBool(*v, "isConnected");
    if (const Json *v = present(o, "isConnecting"))
        c.isConnecting = readBool(*v, "isConnecting");
    c.lastConnected = optionalField<QDateTime>(o, "lastConnected", readDate);
    if (const Json *v = present(o, "thumbnailImage")) {
        auto decoded = QByteArray::fromBase64Encoding(readString(*v, "thumbnailImage").toLatin1(),
                                                      QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded)
            typeError("thumbnailImage", "Base64 data");
        c.thumbnailImage = std::move(*decoded);
    }
    c.lastError = optionalField<QString>(o, "lastError", readString);
    if (const Json *v = present(o, "systemStats"))
        c.systemStats = decodeStats(*v);
    return c;
}

Json parse(const QByteArray &data)
{
    Json json = Json::parse(data.constBegin(), data.constEnd(), nullptr, false);
    if (json.is_discarded())
        throw CodingError{QStringLiteral("the data is not valid JSON")};
    return json;
}

void setError(QString *error, const QString &message)
{
    if (error)
        *error = message;
}

} // namespace

QList<RemoteComputer> decodeStoredList(const QVariant &stored)
{
    if (!stored.isValid())
        return {};
    return decodeList(stored.toByteArray()).value_or(QList<RemoteComputer>{});
}

double toReferenceSeconds(const QDateTime &time)
{
    return double(time.toMSecsSinceEpoch()) / 1000.0 - referenceOffset;
}

std::optional<QDateTime> fromReferenceSeconds(double seconds)
{
    // QDateTime covers far more, but anything beyond a few millennia is garbage.
    if (!std::isfinite(seconds) || std::fabs(seconds) > 1.0e11)
        return std::nullopt;
    const auto msecs = static_cast<qint64>(std::llround((seconds + referenceOffset) * 1000.0));
    return QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC);
}

QByteArray encodeList(const QList<RemoteComputer> &computers, QString *error)
{
    try {
        Json array = Json::array();
        for (const RemoteComputer &c : computers)
            array.push_back(encodeComputer(c));
        return QByteArray::fromStdString(array.dump());
    } catch (const CodingError &e) {
        setError(error, e.message);
    } catch (const nlohmann::json::exception &e) {
        setError(error, QString::fromUtf8(e.what()));
    }
    return {};
}

QByteArray encode(const RemoteComputer &computer, QString *error)
{
    try {
        return QByteArray::fromStdString(encodeComputer(computer).dump());
    } catch (const CodingError &e) {
        setError(error, e.message);
    } catch (const nlohmann::json::exception &e) {
        setError(error, QString::fromUtf8(e.what()));
    }
    return {};
}

std::optional<QList<RemoteComputer>> decodeList(const QByteArray &data, QString *error)
{
    try {
        const Json json = parse(data);
        if (!json.is_array())
            throw CodingError{QStringLiteral("the stored list is not a JSON array")};
        QList<RemoteComputer> computers;
        computers.reserve(qsizetype(json.size()));
        for (const Json &record : json)
            computers.append(decodeComputer(record));
        return computers;
    } catch (const CodingError &e) {
        setError(error, e.message);
    } catch (const nlohmann::json::exception &e) {
        setError(error, QString::fromUtf8(e.what()));
    }
    return std::nullopt;
}

std::optional<RemoteComputer> decode(const QByteArray &data, QString *error)
{
    try {
        return decodeComputer(parse(data));
    } catch (const CodingError &e) {
        setError(error, e.message);
    } catch (const nlohmann::json::exception &e) {
        setError(error, QString::fromUtf8(e.what()));
    }
    return std::nullopt;
}

} // namespace ComputerJson
