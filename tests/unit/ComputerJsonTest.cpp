#include "model/ComputerJson.h"
#include "model/UuidText.h"

#include <QSet>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

SystemStats fullStats()
{
    SystemStats s;
    s.totalMemory = 17179869184ULL;
    s.freeMemory = 4294967296ULL;
    s.totalDiskSpace = 18446744073709551615ULL; // survives without a detour through double
    s.freeDiskSpace = 1;
    s.osVersion = QStringLiteral("Debian GNU/Linux 12");
    s.macModel = QStringLiteral("Linux computer");
    s.cpuUsage = 0.25;
    s.activeProcess = QString();
    s.uptimeSeconds = 3600;
    s.agentVersion = QStringLiteral("1.0");
    s.screenCaptureAuthorized = false;
    s.displayCount = 2;
    s.lastBootTime = QDateTime::fromMSecsSinceEpoch(1700000000123, Qt::UTC);
    s.diskVolumes = QList<DiskVolumeInfo>{{QStringLiteral("root"), QStringLiteral("/"), 100, 40},
                                          {QStringLiteral("data"), QStringLiteral("/d"), 7, 0}};
    return s;
}

RemoteComputer fullComputer()
{
    RemoteComputer c;
    c.name = QStringLiteral("Studio [2]");
    c.host = QStringLiteral("10.0.0.7");
    c.port = 0;
    c.username = QStringLiteral("admin");
    c.password = QStringLiteral("p\"w\\d");
    c.description = QStringLiteral("Rack 3");
    c.tags = {QStringLiteral("lab"), QStringLiteral("b")};
    c.isConnected = true;
    c.lastConnected = QDateTime::fromMSecsSinceEpoch(1000, Qt::UTC);
    c.thumbnailImage = QByteArray("\xff\xd8\x00\x01", 4);
    c.lastError = QStringLiteral("refused");
    c.systemStats = fullStats();
    return c;
}

std::vector<std::string> keysOf(const QByteArray &json)
{
    std::vector<std::string> keys;
    const auto object = nlohmann::ordered_json::parse(json.toStdString());
    for (const auto &item : object.items())
        keys.push_back(item.key());
    return keys;
}

QByteArray list(const char *records)
{
    return QByteArray("[") + records + "]";
}

} // namespace

TEST(ComputerJson, RoundTripKeepsEveryField)
{
    const RemoteComputer c = fullComputer();
    RemoteComputer other = c;
    other.port = 65535;
    const auto decoded = ComputerJson::decodeList(ComputerJson::encodeList({c, other}));
    ASSERT_TRUE(decoded);
    ASSERT_EQ(decoded->size(), 2);
    EXPECT_EQ(decoded->at(0), c);
    EXPECT_EQ(decoded->at(1).port, 65535);
    EXPECT_EQ(qHash(decoded->at(0)), qHash(c));
}

TEST(ComputerJson, KeysFollowDeclarationOrderAndAbsentOptionalsAreOmitted)
{
    RemoteComputer bare;
    bare.host = QStringLiteral("h");
    EXPECT_EQ(keysOf(ComputerJson::encode(bare)),
              (std::vector<std::string>{"id", "host", "port", "username", "password", "tags",
                                        "isConnected", "isConnecting"}));
    EXPECT_EQ(
        keysOf(ComputerJson::encode(fullComputer())),
        (std::vector<std::string>{"id", "name", "host", "port", "username", "password",
                                  "description", "tags", "isConnected", "isConnecting",
                                  "lastConnected", "thumbnailImage", "lastError", "systemStats"}));
    const auto json = nlohmann::json::parse(ComputerJson::encode(fullComputer()).toStdString());
    EXPECT_EQ(json["thumbnailImage"], "/9gAAQ==");
    // 1970-01-01T00:00:01Z is 978307199 s before the reference date.
    EXPECT_DOUBLE_EQ(json["lastConnected"].get<double>(), -978307199.0);
    const std::string id = json["id"];
    EXPECT_EQ(QString::fromStdString(id), QString::fromStdString(id).toUpper());
}

TEST(ComputerJson, RecordWithOnlyHostGetsDefaults)
{
    const auto a = ComputerJson::decodeList(list(R"({"host":"mini.local"})"));
    const auto b = ComputerJson::decodeList(list(R"({"host":"mini.local"})"));
    ASSERT_TRUE(a && b);
    const RemoteComputer &c = a->at(0);
    EXPECT_EQ(c.host, "mini.local");
    EXPECT_EQ(c.port, 5905);
    EXPECT_FALSE(c.name || c.description || c.lastConnected || c.thumbnailImage || c.lastError ||
                 c.systemStats);
    EXPECT_TRUE(c.username.isEmpty() && c.password.isEmpty() && c.tags.isEmpty());
    EXPECT_FALSE(c.isConnected || c.isConnecting);
    EXPECT_NE(c.id, b->at(0).id); // a new identity on every load
}

TEST(ComputerJson, LowerCaseIdIsReadAndNullOptionalsAreAbsent)
{
    const auto decoded = ComputerJson::decodeList(list(
        R"({"id":"6f1c4a1e-0b3d-4c8e-9f00-1234567890ab","host":"h","name":null,"unknown":[1]})"));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(UuidText::format(decoded->at(0).id), "6F1C4A1E-0B3D-4C8E-9F00-1234567890AB");
    EXPECT_FALSE(decoded->at(0).name);
}

TEST(ComputerJson, WrongTypesFailTheWholeList)
{
    const char *bad[] = {
        R"({"port":5905})",                            // no host
        R"({"host":7})",                               // host not a string
        R"({"host":"h","port":"5905"})",               // string port
        R"({"host":"h","port":65536})",                // above 65535
        R"({"host":"h","port":-1})",                   // negative
        R"({"host":"h","port":5905.5})",               // fraction for an integer
        R"({"host":"h","tags":"a"})",                  // not an array
        R"({"host":"h","isConnected":1})",             // not a boolean
        R"({"host":"h","id":"not-a-uuid"})",           // unparsable id
        R"({"host":"h","thumbnailImage":"@@@"})",      // not Base64
        R"({"host":"h","lastConnected":"yesterday"})", // not a number
    };
    for (const char *record : bad) {
        const QByteArray json = QByteArray(R"([{"host":"fine"},)") + record + "]";
        EXPECT_FALSE(ComputerJson::decodeList(json)) << record;
    }
    EXPECT_FALSE(ComputerJson::decodeList("not json"));
    EXPECT_FALSE(ComputerJson::decodeList(R"({"host":"h"})")); // not an array
}

TEST(ComputerJson, StatisticsDecodeStrictly)
{
    const char *required =
        R"("totalMemory":1,"freeMemory":2,"totalDiskSpace":3,"freeDiskSpace":4,"osVersion":"o")";
    // Missing macModel fails the record and so the list.
    EXPECT_FALSE(ComputerJson::decodeList(
        list((std::string(R"({"host":"h","systemStats":{)") + required + "}}").c_str())));
    const auto minimal = ComputerJson::decodeList(
        list((std::string(R"({"host":"h","systemStats":{)") + required + R"(,"macModel":"m"}})")
                 .c_str()));
    ASSERT_TRUE(minimal);
    const SystemStats &s = *minimal->at(0).systemStats;
    EXPECT_EQ(s.macModel, "m");
    EXPECT_FALSE(s.cpuUsage || s.activeProcess || s.uptimeSeconds || s.diskVolumes ||
                 s.lastBootTime || s.displayCount);
    // A negative memory size and a null required field are errors.
    EXPECT_FALSE(ComputerJson::decodeList(list(
        R"({"host":"h","systemStats":{"totalMemory":-1,"freeMemory":2,"totalDiskSpace":3,"freeDiskSpace":4,"osVersion":"o","macModel":"m"}})")));
    EXPECT_FALSE(ComputerJson::decodeList(list(
        R"({"host":"h","systemStats":{"totalMemory":null,"freeMemory":2,"totalDiskSpace":3,"freeDiskSpace":4,"osVersion":"o","macModel":"m"}})")));
    // A volume lacking one of its four fields fails too.
    EXPECT_FALSE(ComputerJson::decodeList(
        list((std::string(R"({"host":"h","systemStats":{)") + required +
              R"(,"macModel":"m","diskVolumes":[{"name":"a","path":"/","totalBytes":1}]}})")
                 .c_str())));
}

TEST(ComputerJson, NonFiniteCpuUsageIsAnEncodingError)
{
    RemoteComputer c = fullComputer();
    c.systemStats->cpuUsage = std::numeric_limits<double>::quiet_NaN();
    QString error;
    EXPECT_TRUE(ComputerJson::encodeList({c}, &error).isEmpty());
    EXPECT_TRUE(error.contains("cpuUsage"));
}

TEST(RemoteComputer, EqualityIsByContent)
{
    RemoteComputer a = fullComputer();
    RemoteComputer b = a;
    b.thumbnailImage = QByteArray("\xff\xd8\x00\x02", 4);
    EXPECT_NE(a, b);
    RemoteComputer twin = a;
    twin.id = QUuid::createUuid();
    EXPECT_NE(a, twin); // same host and port, a different computer
    b = a;
    b.systemStats->diskVolumes->last().freeBytes = 1;
    EXPECT_NE(a, b);
    EXPECT_NE(qHash(a), qHash(b));
}

TEST(RemoteComputer, DisplayNameFallsBackToHost)
{
    RemoteComputer c;
    c.host = QStringLiteral("10.1.1.1");
    c.port = 22;
    EXPECT_EQ(c.displayName(), "10.1.1.1");
    c.name = QString();
    EXPECT_EQ(c.displayName(), "10.1.1.1");
    c.name = QStringLiteral("Lab");
    EXPECT_EQ(c.displayName(), "Lab");
    EXPECT_EQ(c.connectionString(), "10.1.1.1:22");
}

TEST(UuidText, ParsesAnyCaseAndRejectsGarbage)
{
    const QUuid id = QUuid::createUuid();
    EXPECT_EQ(UuidText::parse(UuidText::format(id).toLower()), id);
    EXPECT_EQ(UuidText::format(id).size(), 36);
    EXPECT_FALSE(UuidText::parse(QStringLiteral("ABC")));
    EXPECT_FALSE(UuidText::parse(QStringLiteral("ZZZZZZZZ-0B3D-4C8E-9F00-1234567890AB")));
    EXPECT_TRUE(UuidText::parse(QStringLiteral("00000000-0000-0000-0000-000000000000")));
}
