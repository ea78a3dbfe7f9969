// The automation actions' words, as the administrator reads them in telvanectl, the phrase
// list and the desktop launcher.

#include "automation/IntentTable.h"
#include "automation/WardlineShortcuts.h"
#include "platform/IconTable.h"

#include <QSet>
#include <QtTest>

namespace {

struct Expected {
    const char *command;
    const char *title;
    QStringList parameters; // title, description, ... in the order file, computer, name
    const char *summary;    // with FILE and COMPUTER in the parameters' places
    QStringList phrases;
    const char *shortTitle;
    const char *symbol;
};

const QList<Expected> expected = {
    {"connect",
     "Connect to Remote Computer",
     {"Computer", "The remote computer to connect to", "Computer Name",
      "Name of the computer to connect to"},
     "Connect to COMPUTER",
     {"Connect to Telvane", "Connect to remote computer in Telvane",
      "Connect to server in Telvane"},
     "Connect to Computer",
     "desktopcomputer"},
    {"disconnect",
     "Disconnect from Remote Computer",
     {"Computer", "The remote computer to disconnect from", "Computer Name",
      "Name of the computer to disconnect from"},
     "Disconnect from COMPUTER",
     {"Disconnect from Telvane", "Disconnect from remote computer in Telvane"},
     "Disconnect from Computer",
     "desktopcomputer.and.arrow.down"},
    {"remote-control",
     "Start Remote Control",
     {"Computer", "The computer to start remote controlling", "Computer Name",
      "Name of the computer to control"},
     "Start remote control of COMPUTER",
     {"Start remote control in Telvane", "Control remote computer in Telvane",
      "Take control of computer in Telvane"},
     "Start Remote Control",
     "cursorarrow.click"},
    {"stop-remote-control",
     "Stop Remote Control",
     {"Computer", "The computer to stop remote controlling", "Computer Name",
      "Name of the computer to stop controlling"},
     "Stop remote control of COMPUTER",
     {"Stop remote control in Telvane", "Stop controlling computer in Telvane"},
     "Stop Remote Control",
     "cursorarrow.click.badge.clock"},
    {"status",
     "Get Computer Status",
     {"Computer", "The computer to check status for", "Computer Name",
      "Name of the computer to check"},
     "Get status of COMPUTER",
     {"Check status in Telvane", "Get computer status in Telvane",
      "Check remote computer status in Telvane"},
     "Check Computer Status",
     "info.circle"},
    {"upload",
     "Upload File",
     {"File", "The file to upload", "Computer", "The computer to upload the file to",
      "Computer Name", "Name of the computer to upload to"},
     "Upload FILE to COMPUTER",
     {"Upload file to Telvane", "Send file to remote computer in Telvane"},
     "Upload File",
     "arrow.up.doc"},
};

QStringList parameterTexts(const IntentTable::Entry &entry)
{
    QStringList texts;
    for (const IntentTable::Parameter &parameter :
         {entry.file, entry.computer, entry.computerName}) {
        if (parameter.isPresent())
            texts << IntentTable::text(parameter.title) << IntentTable::text(parameter.description);
    }
    return texts;
}

} // namespace

class IntentTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyTextOfEveryAction()
    {
        QCOMPARE(IntentTable::entries().size(), size_t(expected.size()));
        for (qsizetype i = 0; i < expected.size(); ++i) {
            const Expected &want = expected.at(i);
            const IntentTable::Entry &entry = IntentTable::entries()[size_t(i)];
            QCOMPARE(entry.command, want.command);
            QCOMPARE(IntentTable::find(QString::fromLatin1(want.command)), &entry);
            QCOMPARE(IntentTable::text(entry.title), QLatin1String(want.title));
            QCOMPARE(parameterTexts(entry), want.parameters);
            QCOMPARE(IntentTable::summary(entry, "FILE", "COMPUTER"), QLatin1String(want.summary));
            QCOMPARE(IntentTable::phrases(entry), want.phrases);
            QCOMPARE(IntentTable::text(entry.shortTitle), QLatin1String(want.shortTitle));
            QCOMPARE(entry.symbol, want.symbol);
            QVERIFY2(IconTable::find(QString::fromLatin1(entry.symbol)), entry.symbol);
            QVERIFY(entry.perform);
        }
        QVERIFY(!IntentTable::find(u"computers"));
    }

    void noPhraseNamesTwoActions()
    {
        QSet<QString> seen;
        for (const IntentTable::Entry &entry : IntentTable::entries()) {
            for (const QString &phrase : IntentTable::phrases(entry)) {
                const QString key = phrase.simplified().toCaseFolded();
                QVERIFY2(!seen.contains(key), qPrintable(phrase));
                seen.insert(key);
            }
        }
    }

    void phraseMatching_data()
    {
        QTest::addColumn<QString>("phrase");
        QTest::addColumn<QString>("command"); // empty: no action

        QTest::newRow("as written") << "Connect to remote computer in Telvane"
                                    << "connect";
        QTest::newRow("any case") << "CONNECT TO SERVER IN telvane"
                                  << "connect";
        QTest::newRow("loose spaces") << "  upload   file to Telvane "
                                      << "upload";
        QTest::newRow("short phrase") << "disconnect from telvane"
                                      << "disconnect";
        QTest::newRow("third phrase") << "take control of computer in Telvane"
                                      << "remote-control";
        QTest::newRow("without the name") << "Connect to remote computer in"
                                          << "";
        QTest::newRow("name not at the end") << "Telvane connect to"
                                             << "";
        QTest::newRow("another name") << "Connect to Elsewhere"
                                      << "";
        QTest::newRow("a prefix") << "Connect to Telv"
                                  << "";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("command is no phrase") << "connect"
                                              << "";
    }

    void phraseMatching()
    {
        QFETCH(QString, phrase);
        QFETCH(QString, command);
        const IntentTable::Entry *entry = WardlineShortcuts::match(phrase);
        QCOMPARE(entry ? QString::fromLatin1(entry->command) : QString(), command);
    }

    void listingHasEveryPhraseWithItsShortTitle()
    {
        const QStringList lines = WardlineShortcuts::listing().split('\n', Qt::SkipEmptyParts);
        QStringList want;
        for (const Expected &action : expected) {
            for (const QString &phrase : action.phrases)
                want << phrase + '\t' + QLatin1String(action.shortTitle);
        }
        QCOMPARE(lines, want);
    }
};

QTEST_GUILESS_MAIN(IntentTableTest)
#include "IntentTableTest.moc"
