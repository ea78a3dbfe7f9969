// After a whole session in a private HOME (the agent, the console, telvanectl) with the
// loosest umask, every file Telvane and its agent wrote is the user's alone (0600), every
// folder they made 0700, and the user's own folders around them are untouched.

#include "../unit/TestFiles.h"
#include "AgentProcess.h"
#include "ProcessSignals.h"
#include "model/ComputerJson.h"
#include "platform/AppPaths.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"

#include <QDirIterator>
#include <QProcess>
#include <QStandardPaths>
#include <QtTest>
#include <csignal>
#include <sys/stat.h>

namespace {

int modeOf(const QString &path)
{
    struct stat info {};
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777)
                                                                    : -1;
}

int telvanectl(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(TELVANECTL_BINARY), arguments);
    return process.waitForFinished(30000) ? process.exitCode() : -1;
}

} // namespace

class ModeWalkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everythingWrittenIsTheUsersAlone()
    {
        ::umask(0);
        const QString config =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        const QString documents =
            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        // The user's folders, with a mode Telvane would never choose.
        const QStringList parents{config, data, documents};
        for (const QString &parent : parents)
            QVERIFY(::chmod(QFile::encodeName(parent).constData(), 0751) == 0);

        // The agent as scripts/run.sh starts it, its folder made by the agent itself.
        const QString agentFolder = data + QStringLiteral("/Quorvel/local-agent");
        const QString credentials = agentFolder + QStringLiteral("/credentials");
        QVERIFY(AgentProcess::setPassword(credentials, QStringLiteral("walker"),
                                          QStringLiteral("walk secret")));
        AgentProcess agent(agentFolder);
        QVERIFY(agent.start({"--simulate", "--bind", "127.0.0.1", "--port", "0", "--auth", "file",
                             "--credentials-file", credentials, "--uploads-dir",
                             agentFolder + QStringLiteral("/uploads"), "--stats-interval", "0.5"}));

        // A preference set in the console's own code; the console keeps everything
        // connected with it.
        Preferences::shared().setBoolValue(QLatin1String(PreferenceKeys::supervisionAutoConnectAll),
                                           true);
        RemoteComputer computer;
        computer.name = QStringLiteral("Local walker");
        computer.host = QStringLiteral("127.0.0.1");
        computer.port = agent.port();
        computer.username = QStringLiteral("walker");
        computer.password = QStringLiteral("walk secret");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TELVANE_SUPERVISION_PERIOD_MS"), QStringLiteral("250"));
        QProcess console;
        console.setProcessEnvironment(environment);
        console.start(QStringLiteral(TELVANE_CONSOLE_BINARY),
                      {"-platform", "offscreen", "--add-computer-if-empty",
                       QString::fromUtf8(ComputerJson::encode(computer))});
        QByteArray out;
        const auto waitForOutput = [&](const QByteArray &text) {
            return QTest::qWaitFor(
                [&] {
                    console.waitForReadyRead(10);
                    out += console.readAllStandardOutput();
                    return out.contains(text);
                },
                30000);
        };
        QVERIFY2(waitForOutput("Local walker status to true"), out.constData());

        // An upload through telvanectl, carried out by the console, received by the agent.
        const QString source =
            writeFile(QDir::temp().filePath(QStringLiteral("walk-report.txt")), "walk");
        QCOMPARE(telvanectl({"upload", "--file", source, "--computer-name", "walker"}), 0);
        const QString received = agentFolder + QStringLiteral("/uploads/walk-report.txt");
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(received), 30000);
        QVERIFY2(waitForOutput("File transfer response received"), out.constData());

        QVERIFY(signalRunning(console, SIGTERM));
        const bool finished = console.waitForFinished(20000);
        out += console.readAllStandardOutput();
        QVERIFY2(finished, out.right(2000).constData());
        QCOMPARE(console.exitCode(), 0);
        // A request written while the console is not running keeps its staged copy.
        QCOMPARE(telvanectl({"upload", "--file", source, "--computer-name", "walker"}), 0);
        QFile::remove(source);
        {
            // A preview thumbnail, written by the console's own store.
            AppState state;
            state.storeThumbnail(state.computers().first().id, QByteArray("jpeg"));
            QTRY_VERIFY(state.computers().first().thumbnailImage);
            state.waitForPendingWrites();
        }
        QCOMPARE(agent.terminate(), 0);

        const QStringList roots{config + QStringLiteral("/Quorvel"),
                                data + QStringLiteral("/Quorvel"), AppPaths::thumbnailsDirectory()};
        QStringList wrong;
        int files = 0;
        for (const QString &root : roots) {
            QVERIFY2(QFileInfo(root).isDir(), qPrintable(root));
            if (modeOf(root) != 0700)
                wrong << QStringLiteral("%1 %2").arg(modeOf(root), 0, 8).arg(root);
            QDirIterator it(root,
                            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                            QDirIterator::Subdirectories);
            while (it.hasNext()) {
                const QFileInfo entry(it.next());
                const int expected = entry.isDir() ? 0700 : 0600;
                files += entry.isDir() ? 0 : 1;
                if (modeOf(entry.filePath()) != expected)
                    wrong << QStringLiteral("%1 %2")
                                 .arg(modeOf(entry.filePath()), 0, 8)
                                 .arg(entry.filePath());
            }
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
        // What the session must have written: suite, preferences, known agents, identity,
        // credentials, the received and the staged file, the thumbnail.
        QVERIFY2(files >= 9, qPrintable(QString::number(files)));
        for (const QString &parent : parents)
            QCOMPARE(modeOf(parent), 0751);
    }
};

QTEST_GUILESS_MAIN(ModeWalkTest)
#include "ModeWalkTest.moc"
