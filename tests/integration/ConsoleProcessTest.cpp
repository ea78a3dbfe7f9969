// The console binary as a user starts it: its command line without any display, and its
// start and end around the stored list.

#include "../unit/TestFiles.h"
#include "ProcessSignals.h"
#include "model/ComputerJson.h"
#include "platform/SettingsFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QtTest>
#include <csignal>

namespace {

struct Run {
    int exitCode = -1;
    QProcess::ExitStatus status = QProcess::CrashExit;
    QString out;
    QString err;
};

// No display of any kind: what a console started over ssh or from a service meets.
QProcessEnvironment headless()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(name));
    return environment;
}

Run runConsole(const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TELVANE_CONSOLE_BINARY), arguments);
    Run run;
    if (!process.waitForFinished(30000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitCode();
    run.status = process.exitStatus();
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

} // namespace

class ConsoleProcessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commandLineWithoutADisplay_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        QTest::newRow("help") << QStringList{"--help"} << 0 << "--add-computer-if-empty"
                              << "";
        QTest::newRow("version") << QStringList{"--version"} << 0 << "Telvane "
                                 << "";
        QTest::newRow("bad option") << QStringList{"--bogus"} << 2 << ""
                                    << "bogus";
        QTest::newRow("bad option after a Qt option")
            << QStringList{"-style", "fusion", "--bogus"} << 2 << ""
            << "bogus";
        QTest::newRow("nothing to show on") << QStringList{} << 1 << ""
                                            << "display";
        QTest::newRow("Qt's options are not ours to refuse")
            << QStringList{"-session", "abc", "-reverse"} << 1 << ""
            << "display";
    }

    void commandLineWithoutADisplay()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, err);
        const Run run = runConsole(arguments, headless());
        QCOMPARE(run.status, QProcess::NormalExit);
        QVERIFY2(run.exitCode == exitCode, qPrintable(run.err));
        QVERIFY2(run.out.contains(out), qPrintable(run.out));
        QVERIFY2(run.err.contains(err), qPrintable(run.err));
        if (exitCode == 1)
            QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
    }

    // A console ended by a signal shuts down like one whose window was closed.
    void signalsEndTheConsoleInOrder_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void signalsEndTheConsoleInOrder()
    {
        QFETCH(int, signalNumber);
        QFile::remove(SettingsFiles::sharedSuitePath());
        QProcess console;
        console.start(
            QStringLiteral(TELVANE_CONSOLE_BINARY),
            {"-platform", "offscreen", "--add-computer-if-empty", R"({"host":"up.local"})"});
        QVERIFY(console.waitForStarted());
        // The record is saved once the console is up.
        QVERIFY(QTest::qWaitFor(
            [] {
                return SettingsFiles::openSharedSuite()
                    ->value("remoteComputers")
                    .toByteArray()
                    .contains("up.local");
            },
            20000));
        QVERIFY(signalRunning(console, signalNumber));
        QVERIFY(console.waitForFinished(20000));
        const QByteArray out = console.readAllStandardOutput();
        QCOMPARE(console.exitStatus(), QProcess::NormalExit);
        QCOMPARE(console.exitCode(), 0);
        QVERIFY2(out.contains("[MEMORY] AppState deinitialized"), out.constData());
        QVERIFY2(out.contains("[MEMORY] ZEKTManager deinitialized"), out.constData());
    }

    // A settings file the console cannot use is said on standard error at start, with the
    // path of the copy kept beside it.
    void storedFileProblemsAreSaidAtStart_data()
    {
        QTest::addColumn<QByteArray>("suite");
        QTest::addColumn<QString>("kind");
        QTest::newRow("file that does not parse")
            << QByteArray("[General\nremoteComputers=@ByteArray([])\n") << "corrupt";
        // What scripts/run.sh meets when another tool wrote a port above 65535.
        QTest::newRow("list that does not decode")
            << QByteArray("[General]\nremoteComputers=\"@ByteArray([{\\\"host\\\":\\\"a\\\","
                          "\\\"port\\\":70000}])\"\n")
            << "undecodable";
    }

    void storedFileProblemsAreSaidAtStart()
    {
        QFETCH(QByteArray, suite);
        QFETCH(QString, kind);
        const QString path = SettingsFiles::sharedSuitePath();
        const QFileInfo info(path);
        QDir(info.absolutePath()).removeRecursively();
        QVERIFY(SettingsFiles::makePrivateFolder(info.absolutePath()));
        writeFile(path, suite);

        QProcess console;
        console.start(
            QStringLiteral(TELVANE_CONSOLE_BINARY),
            {"-platform", "offscreen", "--add-computer-if-empty", R"({"host":"127.0.0.1"})"});
        const QString pattern = info.fileName() + QLatin1Char('.') + kind + QStringLiteral("-*");
        QVERIFY(QTest::qWaitFor(
            [&] { return !info.absoluteDir().entryList({pattern}, QDir::Files).isEmpty(); },
            20000));
        const QString copy =
            info.absoluteDir().filePath(info.absoluteDir().entryList({pattern}).first());
        QVERIFY(signalRunning(console, SIGTERM));
        QVERIFY(console.waitForFinished(20000));
        QCOMPARE(console.exitCode(), 0);
        const QString err = QString::fromLocal8Bit(console.readAllStandardError());
        QVERIFY2(err.contains(QStringLiteral("telvane: ")) && err.contains(copy), qPrintable(err));
        QCOMPARE(readFile(copy), suite);
        // A list that is empty only because it did not decode gets nothing added.
        if (kind == QLatin1String("undecodable"))
            QCOMPARE(readFile(path), suite);
    }

    // SIGTERM in the middle of a burst of saves: the list read back is the last one saved.
    void signalDuringABurstOfSavesLosesNone()
    {
        QRandomGenerator random(20261124);
        for (int round = 0; round < 3; ++round) {
            QFile::remove(SettingsFiles::sharedSuitePath());
            QProcess burst;
            burst.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            burst.start(QStringLiteral(SAVE_BURST_PATH), {QStringLiteral("100")});
            QVERIFY(burst.waitForStarted());
            const int signalAfter = random.bounded(1, 90);
            QStringList saved;
            const auto readLines = [&] {
                while (burst.canReadLine()) {
                    // The in-app log is mirrored to stdout too.
                    const QString line = QString::fromUtf8(burst.readLine()).trimmed();
                    if (line.startsWith(QLatin1String("save ")))
                        saved << line;
                }
            };
            QVERIFY(QTest::qWaitFor(
                [&] {
                    burst.waitForReadyRead(5);
                    readLines();
                    return saved.size() >= signalAfter;
                },
                20000));
            QVERIFY(signalRunning(burst, SIGTERM));
            QVERIFY(burst.waitForFinished(20000));
            readLines();
            QCOMPARE(burst.exitStatus(), QProcess::NormalExit);
            QCOMPARE(burst.exitCode(), 0);
            const auto stored = ComputerJson::decodeList(
                SettingsFiles::openSharedSuite()->value("remoteComputers").toByteArray());
            QVERIFY(stored && stored->size() == 1);
            QCOMPARE(stored->first().description.value_or(QString()), saved.last());
        }
    }
};

QTEST_GUILESS_MAIN(ConsoleProcessTest)
#include "ConsoleProcessTest.moc"
