// The one table of defaults, values that are not booleans, and the in-memory copy.
#include "platform/Preferences.h"
#include "platform/PreferenceKeys.h"
#include "platform/SettingsFiles.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>

namespace {

void writeRaw(const QString &key, const QVariant &value)
{
    const auto settings = SettingsFiles::openStandard();
    settings->setValue(key, value);
    settings->sync();
}

} // namespace

class PreferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const auto settings = SettingsFiles::openStandard();
        settings->clear();
        settings->sync();
        Preferences::shared().reload();
    }

    void everyKeyHasItsDefault_data()
    {
        using namespace PreferenceKeys;
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("expected");
        const auto row = [](const char *key, bool expected) {
            QTest::newRow(key) << QString::fromLatin1(key) << expected;
        };
        row(supervisionAutoConnectAll, false);
        row(dashboardShowSummaryTiles, true);
        row(dashboardShowHealthMetrics, true);
        row(dashboardShowTechnicalSpecs, true);
        row(dashboardShowScreenPreview, false);
        for (const char *pill :
             {pillsShowOS, pillsShowModel, pillsShowMemory, pillsShowDiskFree, pillsShowUptime,
              pillsShowIPAddress, pillsShowLoggedInUser, pillsShowNetworkName,
              pillsShowDisplayCount, pillsShowMainResolution, pillsShowAgentVersion,
              pillsShowSession, pillsShowScreenAccess, pillsShowRemoteControl, pillsShowFrontApp})
            row(pill, true);
    }

    void everyKeyHasItsDefault()
    {
        QFETCH(QString, key);
        QFETCH(bool, expected);
        QVERIFY(Preferences::knownKeys().contains(key));
        QCOMPARE(Preferences::defaultBool(key), expected);
        QCOMPARE(Preferences::shared().boolValue(key), expected);
    }

    void theTableHasNoKeyWithoutItsRow() { QCOMPARE(Preferences::knownKeys().size(), 20); }

    void storedValuesThatAreNotBooleansReadAsTheDefault_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("expected");
        QTest::newRow("false") << QVariant(false) << false;
        QTest::newRow("text false") << QVariant(QStringLiteral("false")) << false;
        QTest::newRow("a word") << QVariant(QStringLiteral("off")) << true;
        QTest::newRow("a number") << QVariant(0) << true;
        QTest::newRow("empty") << QVariant(QString()) << true;
        QTest::newRow("a list") << QVariant(QStringList{"true", "false"}) << true;
    }

    void storedValuesThatAreNotBooleansReadAsTheDefault()
    {
        QFETCH(QVariant, stored);
        QFETCH(bool, expected);
        const QString key = QLatin1String(PreferenceKeys::pillsShowOS);
        writeRaw(key, stored);
        Preferences::shared().reload();
        QCOMPARE(Preferences::shared().boolValue(key), expected);
    }

    void valuesAreReadOnceAndWrittenThrough()
    {
        Preferences &preferences = Preferences::shared();
        const QString key = QLatin1String(PreferenceKeys::dashboardShowScreenPreview);
        QSignalSpy changes(&preferences, &Preferences::changed);
        QVERIFY(!preferences.boolValue(key));

        // Read once: a change behind its back shows only after a reload, which announces it.
        writeRaw(key, true);
        QVERIFY(!preferences.boolValue(key));
        preferences.reload();
        QVERIFY(preferences.boolValue(key));
        QCOMPARE(changes.size(), 1);

        preferences.setBoolValue(key, false);
        preferences.setBoolValue(key, false); // unchanged: no second announcement
        QCOMPARE(changes.size(), 2);
        QCOMPARE(changes.last().first().toString(), key);
        QCOMPARE(SettingsFiles::openStandard()->value(key).toBool(), false);
    }
};

QTEST_GUILESS_MAIN(PreferencesTest)
#include "PreferencesTest.moc"
