// One scripted session against the real telvane-agent (simulated host), from connecting to
// quitting, with every in-app log line compared to a recorded transcript: text, category and
// order. Numbers that change from run to run (ports, byte counts) are masked. The protocol
// library logs from its I/O threads, so its lines fall among the console's at varying places:
// they are compared in their own order, the console's lines in theirs.
//   TELVANE_RECORD_TRANSCRIPT=<file> writes the transcript instead of comparing.
#include "AgentProcess.h"
#include "LogLines.h"
#include "ScriptedAlertPresenter.h"
#include "TestFiles.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString password = QStringLiteral("golden secret");

// Lets every queued log append and main-thread step of the last action run.
void settle()
{
    QTest::qWait(300);
}

QString masked(QString line, quint16 port)
{
    line.replace(QString::number(port), QStringLiteral("PORT"));
    static const QRegularExpression bytes(QStringLiteral("\\d+ bytes"));
    line.replace(bytes, QStringLiteral("N bytes"));
    static const QRegularExpression identity(QStringLiteral("identity [0-9a-f]{64}"));
    line.replace(identity, QStringLiteral("identity FINGERPRINT"));
    return line;
}

// The protocol library's own lines.
bool isLibraryLine(const QString &line)
{
    static const QRegularExpression library(
        QStringLiteral("^[A-Z]+ \\| (Connecting to 127|Trusting |Authenticating to |"
                       "Authenticated to |Offering )"));
    return library.match(line).hasMatch();
}

// The lines of one source, in order.
QStringList linesFrom(const QStringList &lines, bool library)
{
    QStringList picked;
    for (const QString &line : lines) {
        if (isLibraryLine(line) == library)
            picked << line;
    }
    return picked;
}

} // namespace

class SessionLogOrderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sessionLogKeepsItsTranscript()
    {
        QTemporaryDir dir;
        QVERIFY(AgentProcess::setPassword(dir.filePath("credentials"), "admin", password));
        QVERIFY(QDir().mkpath(dir.filePath("uploads")));
        AgentProcess agent(dir.path());
        // One statistics report at login and none after it within the test.
        QVERIFY(
            agent.start({"--simulate", "--auth", "file", "--credentials-file",
                         dir.filePath("credentials"), "--bind", "127.0.0.1", "--port", "0",
                         "--uploads-dir", dir.filePath("uploads"), "--stats-interval", "3600"}));

        ScriptedAlertPresenter presenter;
        auto state = std::make_unique<AppState>();
        ZEKTManager &manager = state->zektManager();
        manager.setAlertPresenter(&presenter);
        RemoteComputer computer;
        computer.name = QStringLiteral("Golden");
        computer.host = QStringLiteral("127.0.0.1");
        computer.port = agent.port();
        computer.username = QStringLiteral("admin");
        computer.password = password;
        state->addComputer(computer);
        state->waitForPendingWrites();
        settle();
        LogLines::clear();
        const auto record = [&] { return *state->computer(computer.id); };

        manager.connectToComputer(computer);
        QTRY_VERIFY_WITH_TIMEOUT(record().isConnected, 20000);
        QTRY_VERIFY_WITH_TIMEOUT(record().systemStats.has_value(), 10000);
        settle();

        manager.requestManualPreview(computer);
        QTRY_VERIFY_WITH_TIMEOUT(record().thumbnailImage.has_value(), 10000);
        settle();

        manager.sendFileTransfer(computer, writeFile(dir.filePath("note.txt"), "transcript"),
                                 std::nullopt, false);
        QTRY_VERIFY_WITH_TIMEOUT(state->fileTransferStatus().startsWith("File received"), 20000);
        settle();

        manager.disconnectFromComputer(computer);
        settle();
        state->waitForPendingWrites();
        state.reset();

        QStringList transcript;
        for (const LogLines::Line &line : LogLines::all())
            transcript << line.category + QStringLiteral(" | ") +
                              masked(line.message, agent.port());

        const QString recordTo = qEnvironmentVariable("TELVANE_RECORD_TRANSCRIPT");
        if (!recordTo.isEmpty()) {
            writeFile(recordTo, (transcript.join('\n') + '\n').toUtf8());
            QSKIP("transcript recorded");
        }
        const QStringList expected =
            QString::fromUtf8(readFile(QStringLiteral(TELVANE_SESSION_TRANSCRIPT)))
                .split('\n', Qt::SkipEmptyParts);
        QVERIFY(!expected.isEmpty());
        for (const bool library : {false, true}) {
            const QStringList got = linesFrom(transcript, library);
            const QStringList want = linesFrom(expected, library);
            for (qsizetype i = 0; i < std::max(got.size(), want.size()); ++i) {
                QVERIFY2(got.value(i) == want.value(i),
                         qPrintable(QStringLiteral("%1 line %2:\n  got      %3\n  expected "
                                                   "%4\n\n%5")
                                        .arg(library ? "library" : "console")
                                        .arg(i + 1)
                                        .arg(got.value(i), want.value(i), transcript.join('\n'))));
            }
        }
    }
};

QTEST_MAIN(SessionLogOrderTest)
#include "SessionLogOrderTest.moc"
