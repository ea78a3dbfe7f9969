// What the computer detail shows: pills, byte counts, uptime, fact tiles, the inventory,
// dates, texts from agents, and the action bar of the view model.
#include "SampleStatistics.h"
#include "platform/PreferenceKeys.h"
#include "presentation/ByteCountFormat.h"
#include "presentation/ComputerPreviewViewSnapshot.h"
#include "presentation/DateTimeText.h"
#include "presentation/ITInventory.h"
#include "presentation/ReportedText.h"
#include "presentation/StatusFacts.h"
#include "presentation/TechnicalSpecPills.h"
#include "presentation/UptimeFormat.h"

#include <QTest>
#include <limits>

Q_DECLARE_METATYPE(ByteCountFormat::Style)
Q_DECLARE_METATYPE(SystemStats)

namespace {

using SampleStatistics::everyPill;
using SampleStatistics::required;

constexpr quint64 max64 = std::numeric_limits<quint64>::max();

// "Title=value@symbol" per pill.
QStringList described(const QList<SpecPill> &pills)
{
    QStringList lines;
    for (const SpecPill &pill : pills)
        lines << pill.title + "=" + pill.value + "@" + pill.systemImage;
    return lines;
}

// "Title: label=value; …" per group.
QStringList described(const QList<InventoryGroup> &groups)
{
    QStringList lines;
    for (const InventoryGroup &group : groups) {
        QStringList rows;
        for (const InventoryGroup::Row &row : group.rows)
            rows << row.label + "=" + row.value;
        lines << group.title + ": " + rows.join("; ");
    }
    return lines;
}

TechnicalSpecPills::Switches without(const char *key)
{
    TechnicalSpecPills::Switches switches = TechnicalSpecPills::allOn();
    const auto definitions = TechnicalSpecPills::definitions();
    for (size_t i = 0; i < definitions.size(); ++i) {
        if (QLatin1String(definitions[i].preferenceKey) == QLatin1String(key))
            switches &= ~(TechnicalSpecPills::Switches(1) << i);
    }
    return switches;
}

} // namespace

class DetailContentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void pills_data()
    {
        QTest::addColumn<SystemStats>("stats");
        QTest::addColumn<quint32>("switches");
        QTest::addColumn<QStringList>("pills");
        const QStringList alwaysShown{"OS=14.2@applelogo", "Model=Mac14,2@laptopcomputer",
                                      "Memory=16 GB@memorychip",
                                      "Disk Free=494.38 GB@internaldrive"};
        QTest::newRow("required fields only")
            << required() << TechnicalSpecPills::allOn() << alwaysShown;
        QTest::newRow("everything, in order")
            << everyPill() << TechnicalSpecPills::allOn()
            << alwaysShown + QStringList{"Uptime=1h 1m@clock.arrow.circlepath",
                                         "IP Address=10.0.0.7@network",
                                         "Logged-In User=ada@person.crop.circle",
                                         "Network=Office@wifi",
                                         "Displays=2@rectangle.on.rectangle",
                                         "Main Resolution=2560x1440@display",
                                         "Agent=1.4.0@shippingbox",
                                         "Lock Status=Locked@lock.fill",
                                         "Screen Access=Allowed@checkmark.shield",
                                         "Remote Control=Needs Permission@hand.raised",
                                         "Front App=Terminal@app.badge.fill"};
        SystemStats empty = required();
        empty.primaryIPAddress = empty.loggedInUser = empty.networkName = QString();
        empty.mainDisplayResolution = empty.agentVersion = empty.activeProcess = QString();
        empty.displayCount = 0;
        empty.osVersion.clear();
        QTest::newRow("empty texts and no displays hide, OS shows empty")
            << empty << TechnicalSpecPills::allOn()
            << QStringList{"OS=@applelogo", "Model=Mac14,2@laptopcomputer",
                           "Memory=16 GB@memorychip", "Disk Free=494.38 GB@internaldrive"};
        SystemStats flipped = required();
        flipped.screenLocked = false;
        flipped.screenCaptureAuthorized = false;
        flipped.accessibilityAuthorized = true;
        flipped.uptimeSeconds = 0;
        QTest::newRow("the other states")
            << flipped << without(PreferenceKeys::pillsShowOS)
            << QStringList{"Model=Mac14,2@laptopcomputer",
                           "Memory=16 GB@memorychip",
                           "Disk Free=494.38 GB@internaldrive",
                           "Uptime=0m@clock.arrow.circlepath",
                           "Lock Status=Unlocked@lock.open",
                           "Screen Access=Needs Permission@exclamationmark.triangle",
                           "Remote Control=Allowed@cursorarrow.motionlines"};
        QTest::newRow("every switch off") << everyPill() << quint32(0) << QStringList{};
    }

    void pills()
    {
        QFETCH(SystemStats, stats);
        QFETCH(quint32, switches);
        QFETCH(QStringList, pills);
        QCOMPARE(described(TechnicalSpecPills::pills(stats, switches)), pills);
    }

    void pillSwitchesAreTheirPreferences()
    {
        QVERIFY(TechnicalSpecPills::isSwitchKey(PreferenceKeys::pillsShowFrontApp));
        QVERIFY(!TechnicalSpecPills::isSwitchKey(PreferenceKeys::dashboardShowSummaryTiles));
    }

    void byteCounts_data()
    {
        QTest::addColumn<quint64>("bytes");
        QTest::addColumn<ByteCountFormat::Style>("style");
        QTest::addColumn<QString>("text");
        const auto file = ByteCountFormat::Style::file;
        const auto memory = ByteCountFormat::Style::memory;
        QTest::newRow("zero") << quint64(0) << file << "0 MB";
        QTest::newRow("below a megabyte") << quint64(500000) << file << "0.5 MB";
        QTest::newRow("one megabyte") << quint64(1000000) << file << "1 MB";
        QTest::newRow("memory megabyte") << quint64(1048576) << memory << "1 MB";
        QTest::newRow("rounds up into GB") << quint64(999960000) << file << "1 GB";
        QTest::newRow("16 GiB as memory") << quint64(17179869184) << memory << "16 GB";
        QTest::newRow("16 GiB as storage") << quint64(17179869184) << file << "17.18 GB";
        QTest::newRow("1.5 GiB") << quint64(1610612736) << memory << "1.5 GB";
        QTest::newRow("terabyte") << quint64(1000000000000) << file << "1 TB";
        QTest::newRow("2^64 - 1 storage") << max64 << file << "18,446,744.07 TB";
        QTest::newRow("2^64 - 1 memory") << max64 << memory << "16,777,216 TB";
    }

    void byteCounts()
    {
        QFETCH(quint64, bytes);
        QFETCH(ByteCountFormat::Style, style);
        QFETCH(QString, text);
        QCOMPARE(ByteCountFormat::format(bytes, style), text);
    }

    void uptime_data()
    {
        QTest::addColumn<quint64>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("90061") << quint64(90061) << "1d 1h";
        QTest::newRow("86400") << quint64(86400) << "1d 0h";
        QTest::newRow("3700") << quint64(3700) << "1h 1m";
        QTest::newRow("3600") << quint64(3600) << "1h 0m";
        QTest::newRow("600") << quint64(600) << "10m";
        QTest::newRow("59") << quint64(59) << "0m";
        QTest::newRow("2^64 - 1") << max64 << "213503982334601d 7h";
    }

    void uptime()
    {
        QFETCH(quint64, seconds);
        QFETCH(QString, text);
        QCOMPARE(UptimeFormat::format(seconds), text);
    }

    void usedPercent_data()
    {
        QTest::addColumn<quint64>("total");
        QTest::addColumn<quint64>("free");
        QTest::addColumn<quint64>("percent");
        QTest::newRow("zero total") << quint64(0) << quint64(0) << quint64(0);
        QTest::newRow("zero total, some free") << quint64(0) << quint64(5) << quint64(0);
        QTest::newRow("one byte, none free") << quint64(1) << quint64(0) << quint64(100);
        QTest::newRow("one byte free") << quint64(1) << quint64(1) << quint64(0);
        QTest::newRow("free above total") << quint64(100) << quint64(150) << quint64(0);
        QTest::newRow("truncates") << quint64(1000) << quint64(241) << quint64(75);
        QTest::newRow("two thirds") << quint64(3) << quint64(1) << quint64(66);
        QTest::newRow("2^64 - 1, none free") << max64 << quint64(0) << quint64(100);
        QTest::newRow("2^64 - 1, half free") << max64 << (quint64(1) << 63) << quint64(49);
    }

    void usedPercent()
    {
        QFETCH(quint64, total);
        QFETCH(quint64, free);
        QFETCH(quint64, percent);
        QCOMPARE(StatusFacts::usedPercent(total, free), percent);
    }

    void factTiles()
    {
        SystemStats s = required();
        s.totalMemory = 0;
        QCOMPARE(StatusFacts::tiles(s),
                 (QList<FactTile>{
                     {"Memory Used", "0%"}, {"Disk Used", "50%"}, {"Disk Free", "494.38 GB"}}));
    }

    void inventory_data()
    {
        QTest::addColumn<SystemStats>("stats");
        QTest::addColumn<QStringList>("groups");
        QTest::newRow("nothing to show") << required() << QStringList{};
        SystemStats sipOnly = required();
        sipOnly.sipEnabled = true;
        QTest::newRow("integrity protection alone shows the heading")
            << sipOnly << QStringList{"Security Posture: "};
        SystemStats some = required();
        some.serialNumber = QString();
        some.hardwareUUID = QStringLiteral("5A1F7C0E");
        some.fileVaultEnabled = false;
        some.mdmEnrolled = true;
        some.lastBootTime = QDateTime(QDate(2026, 11, 24), QTime(8, 30));
        some.lastSleepCause = QString();
        some.lastWakeCause = QStringLiteral("Lid open");
        some.diskVolumes =
            QList<DiskVolumeInfo>{{"Macintosh HD", "/", 1000000000000, 250000000000}};
        QTest::newRow("some of each")
            << some
            << QStringList{"Asset Identity: Hardware UUID=5A1F7C0E",
                           "Security Posture: FileVault=Disabled; MDM Enrollment=Enrolled",
                           "Power & Boot: Last Boot=Nov 24, 2026 at 8:30 AM; Last Wake=Lid open",
                           "Disk Volumes: Macintosh HD=250 GB free of 1 TB"};
        SystemStats all = required();
        all.fileVaultEnabled = all.gatekeeperEnabled = true;
        all.mdmEnrolled = false;
        all.diskVolumes = QList<DiskVolumeInfo>{};
        QTest::newRow("every posture row, no volumes")
            << all
            << QStringList{"Security Posture: FileVault=Enabled; Gatekeeper=Enabled; "
                           "MDM Enrollment=Not Enrolled"};
    }

    void inventory()
    {
        QFETCH(SystemStats, stats);
        QFETCH(QStringList, groups);
        QCOMPARE(described(ITInventory::groups(stats)), groups);
    }

    void inventoryListsEveryVolume()
    {
        SystemStats s = required();
        s.diskVolumes = QList<DiskVolumeInfo>(500, DiskVolumeInfo{"v", "/v", max64, max64});
        const QList<InventoryGroup> groups = ITInventory::groups(s);
        QCOMPARE(groups.size(), 1);
        QCOMPARE(groups.first().rows.size(), 500);
        QCOMPARE(groups.first().rows.last().value,
                 QStringLiteral("18,446,744.07 TB free of 18,446,744.07 TB"));
    }

    void datesHaveNoWeekdayAndAShortMonth_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("text"); // empty: only the pattern is checked
        QTest::newRow("US English")
            << QLocale(QLocale::English, QLocale::UnitedStates) << "Nov 24, 2026 at 3:05 PM";
        QTest::newRow("British English")
            << QLocale(QLocale::English, QLocale::UnitedKingdom) << "24 Nov 2026 at 15:05";
        for (const auto language : {QLocale::German, QLocale::French, QLocale::Japanese,
                                    QLocale::Spanish, QLocale::Arabic})
            QTest::newRow(qPrintable(QLocale::languageToString(language)))
                << QLocale(language) << QString();
    }

    void datesHaveNoWeekdayAndAShortMonth()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, text);
        const QString pattern = DateTimeText::dateFormat(locale);
        QVERIFY2(!pattern.contains("ddd") && !pattern.contains("MMMM") && pattern.contains("yy"),
                 qPrintable(pattern));
        QVERIFY2(pattern.front().isLetterOrNumber() || pattern.front() == '\'',
                 qPrintable(pattern)); // no separator left of the weekday
        if (!text.isEmpty())
            QCOMPARE(DateTimeText::format(QDateTime(QDate(2026, 11, 24), QTime(15, 5)), locale),
                     text);
    }

    void reportedTexts_data()
    {
        QTest::addColumn<QString>("reported");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << "Terminal"
                               << "Terminal";
        QTest::newRow("control characters and runs of blanks")
            << QString("Tab\there\nnew\x01line   end ") << "Tab here new line end";
        QTest::newRow("long") << QString(300, 'x') << QString(256, 'x') + QChar(0x2026);
        const QString pair = QString::fromUtf8("\xF0\x9F\x96\xA5"); // outside the BMP
        QTest::newRow("a character is never split")
            << QString(255, 'x') + pair + "yy" << QString(255, 'x') + QChar(0x2026);
    }

    void reportedTexts()
    {
        QFETCH(QString, reported);
        QFETCH(QString, shown);
        QCOMPARE(ReportedText::shown(reported), shown);
    }

    // label|symbol|enabled per button, in bar order.
    void actionBar_data()
    {
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("connecting");
        QTest::addColumn<QStringList>("buttons");
        QTest::newRow("offline") << false << false
                                 << QStringList{"Connect|play.fill|1",
                                                "Remote Control|cursorarrow.click|0",
                                                "Upload File|square.and.arrow.up|0",
                                                "Edit|pencil|1", "Remove|trash|1"};
        QTest::newRow("connecting")
            << false << true
            << QStringList{"Connecting...|hourglass|0", "Remote Control|cursorarrow.click|0",
                           "Upload File|square.and.arrow.up|0", "Edit|pencil|1", "Remove|trash|1"};
        const QStringList connected{
            "Disconnect|xmark.circle.fill|1", "Remote Control|cursorarrow.click|1",
            "Upload File|square.and.arrow.up|1", "Edit|pencil|0", "Remove|trash|0"};
        QTest::newRow("connected") << true << false << connected;
        QTest::newRow("connected and connecting") << true << true << connected;
    }

    void actionBar()
    {
        QFETCH(bool, connected);
        QFETCH(bool, connecting);
        QFETCH(QStringList, buttons);
        QStringList shown;
        for (const DetailAction &action :
             ComputerPreviewViewSnapshot::actionBar({connected, connecting, std::nullopt}))
            shown << QStringLiteral("%1|%2|%3")
                         .arg(action.label, action.systemImage, QString::number(action.enabled));
        QCOMPARE(shown, buttons);
    }

    void actionEffects()
    {
        using Effect = DetailAction::Effect;
        const auto effectsOf = [](bool connected, bool connecting) {
            QList<Effect> effects;
            for (const DetailAction &action :
                 ComputerPreviewViewSnapshot::actionBar({connected, connecting, std::nullopt}))
                effects << action.effect;
            return effects;
        };
        const QList<Effect> rest{Effect::openRemoteControl, Effect::chooseFileToUpload,
                                 Effect::openEditForm, Effect::confirmRemoval};
        QCOMPARE(effectsOf(false, false), QList<Effect>{Effect::connect} + rest);
        QCOMPARE(effectsOf(false, true), QList<Effect>{Effect::none} + rest);
        QCOMPARE(effectsOf(true, false), QList<Effect>{Effect::disconnect} + rest);
    }

    void liveFlagsComeFromTheStoreWhileTheComputerIsThere()
    {
        ComputerPreviewViewSnapshot snapshot;
        snapshot.computerSnapshot.host = QStringLiteral("lab.local");
        snapshot.computerSnapshot.lastError = QStringLiteral("old");
        RemoteComputer live = snapshot.computerSnapshot;
        live.isConnected = true;
        live.lastError.reset();
        RemoteComputer other;
        other.isConnecting = true;
        QCOMPARE(snapshot.liveFlags({other, live}),
                 (ComputerPreviewViewSnapshot::LiveFlags{true, false, {}}));
        QCOMPARE(snapshot.liveFlags({other}),
                 (ComputerPreviewViewSnapshot::LiveFlags{false, false, QStringLiteral("old")}));
    }

    void statusLine_data()
    {
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("connecting");
        QTest::addColumn<QVariant>("error");
        QTest::addColumn<QString>("line"); // empty: none
        QTest::newRow("connecting")
            << false << true << QVariant("refused") << "Starting connection...";
        QTest::newRow("offline with error") << false << false << QVariant("refused") << "refused";
        QTest::newRow("connected hides the error") << true << false << QVariant("refused") << "";
        QTest::newRow("offline, no error") << false << false << QVariant() << "";
    }

    void statusLine()
    {
        QFETCH(bool, connected);
        QFETCH(bool, connecting);
        QFETCH(QVariant, error);
        QFETCH(QString, line);
        const auto status = ComputerPreviewViewSnapshot::statusLine(
            {connected, connecting,
             error.isValid() ? std::optional<QString>(error.toString()) : std::nullopt});
        QCOMPARE(status ? status->text : QString(), line);
        if (status)
            QCOMPARE(status->tone, connecting ? Tone::blue : Tone::red);
    }

    void removalConfirmation()
    {
        ComputerPreviewViewSnapshot snapshot;
        snapshot.computerSnapshot.host = QStringLiteral("lab.local");
        const Alert alert = snapshot.removalConfirmation();
        QCOMPARE(alert.title, QStringLiteral("Remove Computer"));
        QCOMPARE(alert.text, QStringLiteral("Are you sure you want to remove 'lab.local'? This "
                                            "action cannot be undone."));
        QCOMPARE(alert.buttons.at(alert.destructiveButton), QStringLiteral("Remove"));
        QCOMPARE(alert.buttons.at(alert.cancelButton), QStringLiteral("Cancel"));
    }

    void transferProgressStaysWithinTheBar()
    {
        ComputerPreviewViewSnapshot snapshot;
        for (const auto &[reported, shown] : {std::pair{0.4, 0.4},
                                              {-1.0, 0.0},
                                              {7.0, 1.0},
                                              {std::numeric_limits<double>::quiet_NaN(), 0.0}}) {
            snapshot.fileTransferProgress = reported;
            QCOMPARE(snapshot.shownTransferProgress(), shown);
        }
    }
};

QTEST_GUILESS_MAIN(DetailContentTest)
#include "DetailContentTest.moc"
