// What the dashboard shows: the summary strip, the health badge, the gauges and a card.
#include "SampleStatistics.h"
#include "model/RemoteComputer.h"
#include "presentation/ComputerCardContent.h"
#include "presentation/DashboardSummary.h"
#include "presentation/HealthStatus.h"
#include "presentation/MetricGauge.h"

#include <QTest>
#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(Tone)

namespace {

// One computer per letter: C connected, c connecting, B both, E offline with an error,
// e offline with an empty error, o offline, K connected with an error.
QList<RemoteComputer> fleet(const QString &letters)
{
    QList<RemoteComputer> computers;
    for (const QChar letter : letters) {
        RemoteComputer c;
        c.host = QStringLiteral("h");
        c.isConnected = QStringLiteral("CBK").contains(letter);
        c.isConnecting = QStringLiteral("cB").contains(letter);
        if (letter == 'E' || letter == 'K')
            c.lastError = QStringLiteral("Connection refused");
        if (letter == 'e')
            c.lastError = QString();
        computers.append(c);
    }
    return computers;
}

SystemStats stats(double cpu)
{
    SystemStats s = SampleStatistics::required();
    s.cpuUsage = cpu;
    s.uptimeSeconds = 90061;
    return s;
}

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

} // namespace

class DashboardContentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void summaryCounts_data()
    {
        QTest::addColumn<QString>("computers");
        QTest::addColumn<QStringList>("values"); // total, connected, disconnected, issues
        QTest::newRow("none") << "" << QStringList{"0", "0", "0", "0"};
        QTest::newRow("connected, connecting, offline with an error")
            << "CcE" << QStringList{"3", "1", "1", "1"};
        QTest::newRow("connected and connecting counts twice, never below 0")
            << "BB" << QStringList{"2", "2", "0", "0"};
        QTest::newRow("an empty error is no issue") << "e" << QStringList{"1", "0", "1", "0"};
        QTest::newRow("a connected computer's error is no issue")
            << "KE" << QStringList{"2", "1", "1", "1"};
        QTest::newRow("offline") << "oo" << QStringList{"2", "0", "2", "0"};
    }

    void summaryCounts()
    {
        QFETCH(QString, computers);
        QFETCH(QStringList, values);
        const QList<SummaryTile> tiles = DashboardSummary::of(fleet(computers)).tiles();
        QStringList shown;
        for (const SummaryTile &tile : tiles)
            shown << tile.value;
        QCOMPARE(shown, values);
    }

    void summaryTilesInOrder()
    {
        const QList<SummaryTile> tiles = DashboardSummary{}.tiles();
        const QList<SummaryTile> expected{
            {"Total Macs", "0", "desktopcomputer", Tone::accent},
            {"Connected", "0", "checkmark.circle.fill", Tone::green},
            {"Disconnected", "0", "pause.circle.fill", Tone::secondary},
            {"Connection Issues", "0", "exclamationmark.triangle.fill", Tone::orange},
        };
        QCOMPARE(tiles, expected);
    }

    void badge_data()
    {
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("connecting");
        QTest::addColumn<bool>("error");
        QTest::addColumn<QString>("text");
        QTest::addColumn<Tone>("tone");
        QTest::newRow("connected wins") << true << true << true << "Connected" << Tone::green;
        QTest::newRow("connecting") << false << true << true << "Connecting" << Tone::blue;
        QTest::newRow("issue") << false << false << true << "Issue" << Tone::orange;
        QTest::newRow("offline") << false << false << false << "Offline" << Tone::secondary;
    }

    void badge()
    {
        QFETCH(bool, connected);
        QFETCH(bool, connecting);
        QFETCH(bool, error);
        QFETCH(QString, text);
        QFETCH(Tone, tone);
        QCOMPARE(HealthStatus::of(connected, connecting, error), (HealthStatus{text, tone}));
    }

    void gauge_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<Tone>("tone");
        QTest::addColumn<double>("fill");
        QTest::addColumn<QString>("label");
        QTest::newRow("0.95") << 0.95 << Tone::red << 0.95 << "95%";
        QTest::newRow("0.9") << 0.9 << Tone::red << 0.9 << "90%";
        QTest::newRow("0.8") << 0.8 << Tone::orange << 0.8 << "80%";
        QTest::newRow("0.75") << 0.75 << Tone::orange << 0.75 << "75%";
        QTest::newRow("0.7499") << 0.7499 << Tone::accent << 0.7499 << "74%";
        QTest::newRow("0.759 truncates") << 0.759 << Tone::orange << 0.759 << "75%";
        QTest::newRow("0.57 in double") << 0.57 << Tone::accent << 0.57 << "56%";
        QTest::newRow("1.4") << 1.4 << Tone::red << 1.0 << "100%";
        QTest::newRow("infinite") << infinity << Tone::red << 1.0 << "100%";
        QTest::newRow("0") << 0.0 << Tone::accent << 0.0 << "0%";
        QTest::newRow("negative") << -0.3 << Tone::accent << 0.0 << "0%";
        QTest::newRow("NaN") << notANumber << Tone::accent << 0.0 << "0%";
    }

    void gauge()
    {
        QFETCH(double, value);
        QFETCH(Tone, tone);
        QFETCH(double, fill);
        QFETCH(QString, label);
        const MetricGauge gauge{"CPU", value, "cpu"};
        QCOMPARE(gauge.tone(), tone);
        QCOMPARE(gauge.fill(), fill);
        QCOMPARE(gauge.label(), label);
        QCOMPARE(gauge.accessibleText(), "CPU " + label);
        QCOMPARE(gauge, gauge); // NaN too: an unchanged gauge is not drawn again
    }

    void usedFraction_data()
    {
        QTest::addColumn<quint64>("total");
        QTest::addColumn<quint64>("free");
        QTest::addColumn<double>("used");
        const quint64 max = std::numeric_limits<quint64>::max();
        QTest::newRow("zero total") << quint64(0) << quint64(0) << 0.0;
        QTest::newRow("zero total, some free") << quint64(0) << quint64(5) << 0.0;
        QTest::newRow("all free") << quint64(100) << quint64(100) << 0.0;
        QTest::newRow("free above total") << quint64(100) << quint64(150) << 0.0;
        QTest::newRow("a quarter free") << quint64(100) << quint64(25) << 0.75;
        QTest::newRow("near 2^64, none free") << max << quint64(0) << 1.0;
    }

    void usedFraction()
    {
        QFETCH(quint64, total);
        QFETCH(quint64, free);
        QFETCH(double, used);
        QCOMPARE(MetricGauge::usedFraction(total, free), used);
    }

    void gaugesOfStatistics()
    {
        SystemStats s = stats(0.5);
        s.cpuUsage.reset();
        s.totalMemory = 0;
        s.totalDiskSpace = 1000;
        s.freeDiskSpace = 250;
        const QList<MetricGauge> gauges = MetricGauge::gauges(s);
        QCOMPARE(gauges, (QList<MetricGauge>{{"CPU", 0, "cpu"},
                                             {"Memory", 0, "memorychip"},
                                             {"Disk", 0.75, "internaldrive"}}));
        QCOMPARE(gauges.at(1).label(), QStringLiteral("0%"));
    }

    void cardHeader_data()
    {
        QTest::addColumn<QVariant>("name"); // invalid: none
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("subtitle");
        QTest::newRow("name") << QVariant("Studio") << "10.0.0.7"
                              << "Studio"
                              << "10.0.0.7:5905";
        QTest::newRow("empty name") << QVariant("") << "10.0.0.7"
                                    << "10.0.0.7"
                                    << "10.0.0.7:5905";
        QTest::newRow("no name") << QVariant() << "lab.local"
                                 << "lab.local"
                                 << "lab.local:5905";
        QTest::newRow("neither") << QVariant() << ""
                                 << "Unknown Computer"
                                 << ":5905";
    }

    void cardHeader()
    {
        QFETCH(QVariant, name);
        QFETCH(QString, host);
        QFETCH(QString, title);
        QFETCH(QString, subtitle);
        RemoteComputer c;
        if (name.isValid())
            c.name = name.toString();
        c.host = host;
        const ComputerCardContent content = ComputerCardContent::of(c, {});
        QCOMPARE(content.title, title);
        QCOMPARE(content.subtitle, subtitle);
    }

    // Which parts show, by statistics, status and switches.
    void cardParts_data()
    {
        QTest::addColumn<bool>("hasStats");
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("health");
        QTest::addColumn<bool>("specs");
        QTest::addColumn<QString>("parts"); // g gauges, p pills, P placeholder, e error
        QTest::newRow("statistics, both on") << true << true << true << true << "gp";
        QTest::newRow("statistics, gauges only") << true << true << true << false << "g";
        QTest::newRow("offline with statistics and error")
            << true << false << true << true << "gpe";
        QTest::newRow("no statistics, one on") << false << false << false << true << "Pe";
        QTest::newRow("no statistics, both off") << false << false << false << false << "e";
        QTest::newRow("connected, no statistics yet") << false << true << true << true << "P";
    }

    void cardParts()
    {
        QFETCH(bool, hasStats);
        QFETCH(bool, connected);
        QFETCH(bool, health);
        QFETCH(bool, specs);
        QFETCH(QString, parts);
        RemoteComputer c;
        c.host = QStringLiteral("h");
        c.isConnected = connected;
        c.lastError = QStringLiteral("Connection refused");
        if (hasStats)
            c.systemStats = stats(0.4);
        ComputerCardContent::Switches switches;
        switches.showHealthMetrics = health;
        switches.showTechnicalSpecs = specs;
        const ComputerCardContent content = ComputerCardContent::of(c, switches);
        QString shown;
        shown += content.gauges.isEmpty() ? "" : "g";
        shown += content.pills.isEmpty() ? "" : "p";
        shown += content.showPlaceholder ? "P" : "";
        shown += content.errorText ? "e" : "";
        QCOMPARE(shown, parts);
        QCOMPARE(content.badge.text, connected ? "Connected" : "Issue");
    }

    void cardPlaceholderNamesTheLastConnection()
    {
        RemoteComputer c;
        c.host = QStringLiteral("h");
        QCOMPARE(ComputerCardContent::of(c, {}).lastConnectedText, QString());
        c.lastConnected = QDateTime(QDate(2026, 11, 24), QTime(15, 5));
        QCOMPARE(ComputerCardContent::of(c, {}).lastConnectedText,
                 QStringLiteral("Last connected Nov 24, 2026 at 3:05 PM"));
    }

    void previewIsOffUntilSwitchedOn()
    {
        RemoteComputer c;
        c.host = QStringLiteral("h");
        c.thumbnailImage = QByteArray("jpeg");
        QVERIFY(!ComputerCardContent::Switches::fromPreferences().showScreenPreview);
        const ComputerCardContent off = ComputerCardContent::of(c, {});
        QVERIFY(!off.showPreview && !off.thumbnail);
        ComputerCardContent::Switches on;
        on.showScreenPreview = true;
        QCOMPARE(ComputerCardContent::of(c, on).thumbnail, QByteArray("jpeg"));
    }

    // Cards compare contents: a report that changes nothing shown leaves the card alone.
    void cardContentChangesOnlyWithWhatIsShown()
    {
        RemoteComputer c;
        c.host = QStringLiteral("h");
        c.isConnected = true;
        c.systemStats = stats(0.4);
        const ComputerCardContent before = ComputerCardContent::of(c, {});
        c.systemStats->uptimeSeconds = *c.systemStats->uptimeSeconds + 5; // still 1d 1h
        c.systemStats->serialNumber = QStringLiteral("C02XYZ");           // not on cards
        QCOMPARE(ComputerCardContent::of(c, {}), before);
        c.systemStats->cpuUsage = 0.41;
        QVERIFY(ComputerCardContent::of(c, {}) != before);
    }
};

QTEST_GUILESS_MAIN(DashboardContentTest)
#include "DashboardContentTest.moc"
