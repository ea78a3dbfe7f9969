// The console binary as a user starts it: its command line without any display, and its
// start and end around the stored list.

#include <QProcess>
#include <QtTest>

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
};

QTEST_GUILESS_MAIN(ConsoleProcessTest)
#include "ConsoleProcessTest.moc"
