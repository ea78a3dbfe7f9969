// telvanectl as the shell sees it: exit status, what goes to stdout and to stderr.

#include "model/ComputerJson.h"
#include "model/UuidText.h"
#include "platform/PendingActionKeys.h"
#include "platform/SettingsFiles.h"

#include <QProcess>
#include <QSettings>
#include <QtTest>

namespace {

struct Run {
    int exitCode = -1;
    QString out;
    QString err;
};

Run telvanectl(const QStringList &arguments, const QString &language = QStringLiteral("en"))
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LC_ALL");
    environment.remove("LC_MESSAGES");
    environment.insert("LANGUAGE", language);
    environment.insert("LANG", language == "de" ? "de_DE.UTF-8" : "C.UTF-8");
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TELVANECTL_PATH), arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit)
        qFatal("telvanectl did not finish");
    return Run{process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
               QString::fromLocal8Bit(process.readAllStandardError())};
}

} // namespace

class TelvanectlTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_alpha.name = QStringLiteral("Alpha Studio");
        m_alpha.host = QStringLiteral("alpha.local");
        RemoteComputer unnamed;
        unnamed.host = QStringLiteral("beta.local");
        const auto suite = SettingsFiles::openSharedSuite();
        suite->setValue("remoteComputers", ComputerJson::encodeList({m_alpha, unnamed}));
        suite->sync();
    }

    void helpForEveryAction()
    {
        Run run = telvanectl({"--help"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.err.isEmpty());
        const QStringList actions = {
            "connect", "disconnect", "remote-control", "stop-remote-control",
            "status",  "upload",     "computers",      "phrases"};
        for (const QString &action : actions) {
            QVERIFY2(run.out.contains("  " + action + " "), qPrintable(action));
            const Run help = telvanectl({action, "--help"});
            QCOMPARE(help.exitCode, 0);
            QVERIFY(help.out.startsWith("Usage: telvanectl " + action));
            QVERIFY(help.err.isEmpty());
        }
    }

    void returnedTextOnStdoutOnly()
    {
        Run run = telvanectl({"connect", "--computer-name", "STUDIO"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, QStringLiteral("Queued connection for Alpha Studio\n"));
        QVERIFY(run.err.isEmpty());
        const auto suite = SettingsFiles::openSharedSuite();
        QCOMPARE(suite->value(PendingActionKeys::connection).toString(),
                 UuidText::format(m_alpha.id));

        run = telvanectl({"status"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out.count('\n'), 2);
        run = telvanectl({"computers"});
        QVERIFY(run.out.startsWith(UuidText::format(m_alpha.id) + "\tAlpha Studio\n"));
        QVERIFY(run.out.endsWith("\tbeta.local\n"));
    }

    void actionHelpInTheActionsOwnWords()
    {
        const Run run = telvanectl({"upload", "--help"});
        QCOMPARE(run.exitCode, 0);
        for (const char *text :
             {"Upload File\n", "Upload PATH to COMPUTER\n", "--file PATH           File\n",
              "The file to upload\n", "Computer Name\n", "Name of the computer to upload to\n",
              "Phrases (Upload File):\n  Upload file to Telvane\n"})
            QVERIFY2(run.out.contains(QLatin1String(text)), text);
    }

    void phraseAsTheAction()
    {
        Run run =
            telvanectl({"DISCONNECT from remote computer in telvane", "--computer-name", "beta"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, QStringLiteral("Queued disconnection for beta.local\n"));

        run = telvanectl({"phrases"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.out.startsWith("Connect to Telvane\tConnect to Computer\n"));
        QCOMPARE(run.out.count('\n'), 15);

        run = telvanectl({"Reboot computer in Telvane", "--computer-name", "beta"});
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.out.isEmpty());
        QVERIFY(run.err.contains("'Reboot computer in Telvane'"));
        QVERIFY(run.err.endsWith(telvanectl({"phrases"}).out));
    }

    // Translated phrases must stay apart too, and are understood beside the English ones.
    void germanPhrases()
    {
        const Run run = telvanectl({"phrases"}, "de");
        QSet<QString> seen;
        for (const QString &line : run.out.split('\n', Qt::SkipEmptyParts)) {
            const QString phrase = line.section('\t', 0, 0).toCaseFolded();
            QVERIFY2(!seen.contains(phrase), qPrintable(phrase));
            seen.insert(phrase);
        }
        QCOMPARE(seen.size(), 15);
        QVERIFY(!seen.contains("connect to telvane"));
        QCOMPARE(
            telvanectl({"mit server verbinden in telvane", "--computer-name", "beta"}, "de").out,
            QStringLiteral("Verbindung vorgemerkt für beta.local\n"));
        QCOMPARE(
            telvanectl({"Connect to server in Telvane", "--computer-name", "beta"}, "de").exitCode,
            0);
    }

    void failuresGoToStderrWithNonZeroStatus()
    {
        struct Case {
            QStringList arguments;
            int exitCode;
            QString err;
        };
        const QList<Case> cases = {
            {{"disconnect", "--computer", "nonsense"}, 1, "Computer not found\n"},
            {{"remote-control"}, 1, "Computer not found\n"},
            {{"upload", "--computer-name", "alpha"}, 1, "File not provided\n"},
            {{"upload", "--file", "/nonexistent/x", "--computer-name", "alpha"}, 1, {}},
            {{"connect", "--file", "x"}, 2, {}},
            {{"connect", "stray"}, 2, {}},
            {{"reboot"}, 2, {}},
            {{"phrases", "extra"}, 2, {}},
            {{}, 2, {}},
        };
        for (const Case &c : cases) {
            const Run run = telvanectl(c.arguments);
            QVERIFY2(run.exitCode == c.exitCode, qPrintable(c.arguments.join(' ')));
            QVERIFY(run.out.isEmpty());
            QVERIFY(!run.err.isEmpty());
            if (!c.err.isEmpty())
                QCOMPARE(run.err, c.err);
        }
    }

private:
    RemoteComputer m_alpha;
};

QTEST_GUILESS_MAIN(TelvanectlTest)
#include "TelvanectlTest.moc"
