// The whole automation road with real processes: telvanectl writes requests, the console
// (offscreen) carries them out against telvane-agent --simulate on 127.0.0.1, and
// supervision brings a computer back after its agent was killed and restarted.
// What the console does is read from its log, which it mirrors to stdout.

#include "../unit/TestFiles.h"
#include "AgentProcess.h"
#include "model/ComputerJson.h"
#include "platform/AppPaths.h"
#include "platform/PreferenceKeys.h"
#include "platform/SettingsFiles.h"

#include <QDir>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>

namespace {

const QString password = QStringLiteral("e2e secret");
const QString computerName = QStringLiteral("Telvane E2E Box");

// The console as a process, its stdout collected line by line.
class ConsoleProcess {
public:
    ~ConsoleProcess()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(10000))
            m_process.kill();
        m_process.waitForFinished(5000);
    }

    bool start(const QProcessEnvironment &environment)
    {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(TELVANE_CONSOLE_BINARY), {});
        return m_process.waitForStarted(10000);
    }

    // Lines from now on only.
    void mark() { m_seen = readLines().size(); }

    bool waitForLine(const QString &text, int timeoutMs)
    {
        return QTest::qWaitFor(
            [&] {
                m_process.waitForReadyRead(10);
                const QStringList lines = readLines();
                for (qsizetype i = m_seen; i < lines.size(); ++i) {
                    if (lines.at(i).contains(text))
                        return true;
                }
                return false;
            },
            timeoutMs);
    }

    QString transcript() { return readLines().join(QLatin1Char('\n')); }

private:
    QStringList readLines()
    {
        m_pending += m_process.readAllStandardOutput();
        qsizetype newline;
        while ((newline = m_pending.indexOf('\n')) >= 0) {
            m_lines << QString::fromUtf8(m_pending.left(newline));
            m_pending.remove(0, newline + 1);
        }
        return m_lines;
    }

    QProcess m_process;
    QByteArray m_pending;
    QStringList m_lines;
    qsizetype m_seen = 0;
};

struct CtlRun {
    int exitCode = -1;
    QString out;
};

CtlRun telvanectl(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(TELVANECTL_BINARY), arguments);
    process.waitForFinished(30000);
    return CtlRun{process.exitCode(), QString::fromUtf8(process.readAllStandardOutput())};
}

} // namespace

class AutomationEndToEndTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<AgentProcess> m_agent;
    quint16 m_port = 0;
    QString m_computerId;

    bool startAgent()
    {
        // The same work folder each time: the restarted agent keeps its identity.
        m_agent = std::make_unique<AgentProcess>(m_dir.path());
        return m_agent->start({"--simulate", "--auth", "file", "--credentials-file",
                               m_dir.filePath("credentials"), "--bind", "127.0.0.1", "--port",
                               QString::number(m_port), "--uploads-dir", m_dir.filePath("uploads"),
                               "--stats-interval", "1"});
    }

    static QString statusLine(bool isConnected)
    {
        return QStringLiteral("AppState: Updated computer %1 status to %2")
            .arg(computerName, isConnected ? "true" : "false");
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QVERIFY(AgentProcess::setPassword(m_dir.filePath("credentials"), "admin", password));
        QVERIFY(QDir().mkpath(m_dir.filePath("uploads")));
        QVERIFY(startAgent());
        m_port = m_agent->port();

        RemoteComputer computer;
        computer.name = computerName;
        computer.host = QStringLiteral("127.0.0.1");
        computer.port = m_port;
        computer.username = QStringLiteral("admin");
        computer.password = password;
        m_computerId = computer.id.toString(QUuid::WithoutBraces).toUpper();
        const auto suite = SettingsFiles::openSharedSuite();
        suite->setValue(QStringLiteral("remoteComputers"), ComputerJson::encodeList({computer}));
        suite->sync();
    }

    void queuedRequestsAreCarriedOut()
    {
        ConsoleProcess console;
        QVERIFY(console.start(QProcessEnvironment::systemEnvironment()));

        CtlRun run = telvanectl({"connect", "--computer-name", "e2e box"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, "Queued connection for " + computerName + "\n");
        QVERIFY2(console.waitForLine(statusLine(true), 30000), qPrintable(console.transcript()));

        const QByteArray content = QByteArray("telvane end to end\n").repeated(1000);
        const QString source = writeFile(m_dir.filePath("weekly-report.txt"), content);
        run = telvanectl({"upload", "--file", source, "--computer-name", "E2E"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, "Queued upload of weekly-report.txt to " + computerName + "\n");
        const QString delivered = m_dir.filePath("uploads/weekly-report.txt");
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(delivered), 30000);
        QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(delivered).size(), qint64(content.size()), 10000);
        QCOMPARE(readFile(delivered), content);
        const QDir staging(AppPaths::sharedContainerDirectory() + "/AppIntentUploads");
        QTRY_VERIFY_WITH_TIMEOUT(staging.entryList(QDir::Files).isEmpty(), 10000);

        // A staged copy that vanished before it was sent ends with a readable failure.
        console.mark();
        const auto suite = SettingsFiles::openSharedSuite();
        SettingsFiles::writeSynchronized(*suite, [&](QSettings &settings) {
            settings.setValue("pendingFileUpload",
                              QVariantMap{{"fileURL", staging.filePath("appintents_upload_gone")},
                                          {"computerId", m_computerId}});
        });
        QVERIFY2(console.waitForLine("File transfer failed for " + computerName, 30000),
                 qPrintable(console.transcript()));

        console.mark();
        run = telvanectl({"disconnect", "--computer-name", computerName});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(console.waitForLine(statusLine(false), 30000), qPrintable(console.transcript()));
    }

    void supervisionBringsTheComputerBack()
    {
        {
            const auto standard = SettingsFiles::openStandard();
            standard->setValue(QLatin1String(PreferenceKeys::supervisionAutoConnectAll), true);
            standard->sync();
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TELVANE_SUPERVISION_PERIOD_MS", "250");
        environment.insert("TELVANE_SUPERVISION_RETRY_SECONDS", "2");
        ConsoleProcess console;
        QVERIFY(console.start(environment));
        QVERIFY2(
            console.waitForLine("Supervision: connecting to 1 disconnected computer(s)", 30000),
            qPrintable(console.transcript()));
        QVERIFY2(console.waitForLine(statusLine(true), 30000), qPrintable(console.transcript()));

        console.mark();
        ::kill(pid_t(m_agent->processId()), SIGKILL);
        m_agent->terminate(); // reaps it
        QVERIFY2(console.waitForLine(statusLine(false), 30000), qPrintable(console.transcript()));
        QVERIFY(startAgent());
        // Brought back by a later pass (the first that is at least the interval after
        // the last attempt), not by anything else.
        QVERIFY2(
            console.waitForLine("Supervision: connecting to 1 disconnected computer(s)", 60000),
            qPrintable(console.transcript()));
        QVERIFY2(console.waitForLine(statusLine(true), 60000), qPrintable(console.transcript()));
    }
};

QTEST_GUILESS_MAIN(AutomationEndToEndTest)
#include "AutomationEndToEndTest.moc"
