// A child process installs the crash reporter with the web host pointed at a local
// collector, then fails in each way the reporter must survive: it dies by the expected
// signal within the bounds, the collector gets exactly one request per report with the
// exact multipart body, and nothing is written to the child's folders.

#include "CrashCollector.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>

namespace {

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next();
    return files;
}

} // namespace

class CrashReporterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reportsAndDies_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("helper"); // none: the child itself, as the console
        QTest::addColumn<int>("signalNumber");
        QTest::addColumn<int>("deathWithinMs");
        QTest::addColumn<QList<QByteArray>>("details"); // one per report, in order
        QTest::addColumn<QString>("frame");             // a function the frames must name

        const QByteArray segv = "Signal Type: SIGSEGV (Segmentation Violation)\n\nCall Stack:\n";
        const QByteArray abrt = "Signal Type: SIGABRT (Abort)\n\nCall Stack:\n";
        const int ok = int(CrashCollector::Answer::ok);
        const int never = int(CrashCollector::Answer::never);
        const int error500 = int(CrashCollector::Answer::serverError);
        QTest::newRow("null dereference") << "null" << ok << "" << SIGSEGV << 2000
                                          << QList<QByteArray>{segv} << "writeThroughNull";
        QTest::newRow("abort, server answers 500")
            << "abort" << error500 << "" << SIGABRT << 2000 << QList<QByteArray>{abrt} << "(abort+";
        QTest::newRow("uncaught exception: two reports")
            << "exception" << ok << "" << SIGABRT << 3000
            << QList<QByteArray>{"Exception Type: std::runtime_error\nException Reason: the disk "
                                 "is on fire\n\nCall Stack:\n",
                                 abrt}
            << "throwUncaught";
        QTest::newRow("a huge reason is cut, the frames still follow")
            << "huge-reason" << ok << "" << SIGABRT << 3000
            << QList<QByteArray>{"Exception Type: std::runtime_error\nException Reason: " +
                                     QByteArray(8192, 'x') + "\n\nCall Stack:\n",
                                 abrt}
            << "throwHugeReason";
        QTest::newRow("stack overflow on the main thread")
            << "overflow" << ok << "" << SIGSEGV << 2000 << QList<QByteArray>{segv}
            << "recurseForever";
        QTest::newRow("fault on a worker, server never answers")
            << "worker" << never << "" << SIGSEGV << 2000 << QList<QByteArray>{segv}
            << "writeThroughNull";
        QTest::newRow("two threads at once: one report")
            << "two-threads" << ok << "" << SIGSEGV << 2000 << QList<QByteArray>{segv}
            << "writeThroughNull";
        QTest::newRow("fault inside the handler: the new signal, no report")
            << "fault-in-handler" << ok << "" << SIGSEGV << 2000 << QList<QByteArray>{} << "";
        QTest::newRow("the console binary as the helper")
            << "null" << ok << TELVANE_CONSOLE_BINARY << SIGSEGV << 2000 << QList<QByteArray>{segv}
            << "writeThroughNull";
        QTest::newRow("helper that cannot start")
            << "null" << ok << "no-such-helper" << SIGSEGV << 2000 << QList<QByteArray>{} << "";
    }

    void reportsAndDies()
    {
        QFETCH(QString, scenario);
        QFETCH(int, answer);
        QFETCH(QString, helper);
        QFETCH(int, signalNumber);
        QFETCH(int, deathWithinMs);
        QFETCH(QList<QByteArray>, details);
        QFETCH(QString, frame);

        CrashCollector collector{CrashCollector::Answer(answer)};
        QVERIFY(collector.listen());
        QTemporaryDir root;
        QVERIFY(root.isValid());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY"})
            environment.remove(QLatin1String(name));
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("TELVANE_WEB_HOST", collector.base());
        environment.insert("TELVANE_SUPPORT_EMAIL", "help@example.test");
        const QStringList watched = {"home", "config", "tmp", "data", "cache"};
        for (const QString &folder : watched)
            QVERIFY(QDir(root.path()).mkpath(folder));
        environment.insert("HOME", root.filePath("home"));
        environment.insert("XDG_CONFIG_HOME", root.filePath("config"));
        environment.insert("XDG_DATA_HOME", root.filePath("data"));
        environment.insert("XDG_CACHE_HOME", root.filePath("cache"));
        environment.insert("TMPDIR", root.filePath("tmp"));

        QProcess child;
        child.setProcessEnvironment(environment);
        child.setWorkingDirectory(root.path());
        QStringList arguments{scenario};
        if (!helper.isEmpty())
            arguments << QDir(root.path()).filePath(helper); // absolute paths stay
        qint64 diedNs = 0;
        connect(&child, &QProcess::finished, this, [&] { diedNs = monotonicNs(); });
        child.start(QStringLiteral(CRASH_CHILD_PATH), arguments);
        QVERIFY(child.waitForStarted());
        // Generous: the machine is shared; the bounds are checked against the fault time.
        QTRY_VERIFY_WITH_TIMEOUT(diedNs != 0, 20000);
        // The helper may still be writing; its texts come before its byte to the child.
        QTRY_VERIFY_WITH_TIMEOUT(collector.requests().size() >= details.size(), 5000);
        QTest::qWait(300); // any request that should not come
        const QByteArray out = child.readAllStandardOutput();
        const QByteArray err = child.readAllStandardError();

        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        QCOMPARE(child.exitCode(), signalNumber);
        const qint64 faultNs = out.left(out.indexOf('\n')).toLongLong();
        QVERIFY2(faultNs > 0, out.constData());
        const qint64 tookMs = (diedNs - faultNs) / 1000000;
        QVERIFY2(tookMs < deathWithinMs, qPrintable(QStringLiteral("%1 ms").arg(tookMs)));

        QCOMPARE(collector.requests().size(), details.size());
        for (qsizetype i = 0; i < details.size(); ++i) {
            const CrashCollector::Request &request = collector.requests().at(i);
            QCOMPARE(request.method, QByteArray("POST"));
            QCOMPARE(request.path, QByteArray("/crash_reports/index.php"));
            QCOMPARE(request.headers.value("user-agent"), QByteArray("Telvane-9.8.7"));
            const QByteArray contentType = request.headers.value("content-type");
            const QByteArray prefix = "multipart/form-data; boundary=";
            QVERIFY2(contentType.startsWith(prefix), contentType.constData());
            const QByteArray boundary = contentType.mid(prefix.size());
            QVERIFY(QRegularExpression("^[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$")
                        .match(QString::fromLatin1(boundary))
                        .hasMatch());
            const QByteArray head =
                "--" + boundary + "\r\nContent-Disposition: form-data; name=\"crashlog\"\r\n\r\n";
            const QByteArray tail = "\r\n--" + boundary + "--\r\n";
            QVERIFY(request.body.startsWith(head));
            QVERIFY(request.body.endsWith(tail));
            const QByteArray report =
                request.body.mid(head.size(), request.body.size() - head.size() - tail.size());

            const QRegularExpression header(
                "^Crash Report\n============\nApp: Telvane\nVersion: 9.8.7\nmacOS Version: "
                "[^\n]+ Linux [^\n]+\nTimestamp: "
                "\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ\n\n");
            const QRegularExpressionMatch match = header.match(QString::fromUtf8(report));
            QVERIFY2(match.hasMatch(), report.left(300).constData());
            const QByteArray rest = report.mid(match.capturedLength());
            QVERIFY2(rest.startsWith(details.at(i)), rest.left(300).constData());
            const QList<QByteArray> frames = rest.mid(details.at(i).size()).split('\n');
            QVERIFY(frames.size() >= 3 && frames.size() <= 128);
            for (const QByteArray &line : frames)
                QVERIFY2(line.endsWith(']') && line.contains("[0x"), line.constData());
            QVERIFY2(rest.contains(frame.toLatin1()), rest.constData());
        }

        if (!details.isEmpty())
            QVERIFY2(err.contains("Application Error\n\nThe application encountered an "
                                  "unexpected error.") &&
                         err.contains("Send an email to help@example.test to be notified asap."),
                     err.constData());
        for (const QString &folder : watched)
            QVERIFY2(filesBelow(root.filePath(folder)).isEmpty(),
                     qPrintable(filesBelow(root.filePath(folder)).join(' ')));
    }

    // The console as the helper, fed directly: what it does with what arrives on its input.
    void helperProcess_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<bool>("display");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<int>("requests");
        QTest::addColumn<int>("minMs");
        QTest::addColumn<int>("maxMs");
        const QByteArray report = "Crash Report\n============\nApp: Telvane\nVersion: 0.1\nmacOS "
                                  "Version: x\nTimestamp: 2024-05-01T12:34:56Z\n\nSignal Type: "
                                  "Signal 10\n\nCall Stack:\n./telvane(main+0x1)[0x1]\n";
        QTest::newRow("a report, no display") << report << false << 0 << 1 << 0 << 5000;
        QTest::newRow("not a report") << QByteArray("hello\n") << false << 2 << 0 << 0 << 5000;
        QTest::newRow("nothing") << QByteArray() << false << 2 << 0 << 0 << 5000;
        QTest::newRow("a report with a display: the alert closes itself after 10 s")
            << report << true << 0 << 1 << 9500 << 15000;
    }

    void helperProcess()
    {
        QFETCH(QByteArray, input);
        QFETCH(bool, display);
        QFETCH(int, exitCode);
        QFETCH(int, requests);
        QFETCH(int, minMs);
        QFETCH(int, maxMs);

        CrashCollector collector(CrashCollector::Answer::ok);
        QVERIFY(collector.listen());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("WAYLAND_DISPLAY");
        environment.remove("DISPLAY");
        if (display) // the offscreen platform needs no server behind the name
            environment.insert("DISPLAY", ":telvane-test");
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("TELVANE_WEB_HOST", collector.base());
        QProcess helper;
        helper.setProcessEnvironment(environment);
        qint64 endedNs = 0;
        connect(&helper, &QProcess::finished, this, [&] { endedNs = monotonicNs(); });
        const qint64 startNs = monotonicNs();
        helper.start(QStringLiteral(TELVANE_CONSOLE_BINARY), {"--crash-report"});
        QVERIFY(helper.waitForStarted());
        helper.write(input);
        helper.closeWriteChannel();
        if (requests > 0) // sent before any alert
            QTRY_COMPARE_WITH_TIMEOUT(collector.requests().size(), requests, 3000);
        QTRY_VERIFY_WITH_TIMEOUT(endedNs != 0, 20000);
        const qint64 tookMs = (endedNs - startNs) / 1000000;

        QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
        QCOMPARE(helper.exitCode(), exitCode);
        QCOMPARE(helper.readAllStandardOutput(), QByteArray("\n")); // the byte for the console
        const QByteArray err = helper.readAllStandardError();
        QVERIFY2(err.contains("Application Error\n"), err.constData());
        QVERIFY2(exitCode == 0 || err.contains("--crash-report: "), err.constData());
        QCOMPARE(collector.requests().size(), requests);
        if (requests > 0)
            QVERIFY(collector.requests().first().body.contains(input.chopped(1) + "\r\n--"));
        QVERIFY2(tookMs >= minMs && tookMs <= maxMs, qPrintable(QString::number(tookMs)));
    }
};

QTEST_GUILESS_MAIN(CrashReporterTest)
#include "CrashReporterTest.moc"
