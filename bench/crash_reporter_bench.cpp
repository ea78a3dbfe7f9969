// Prints how long a crash holds the process: a child installs the crash reporter, writes
// the time and dereferences null; the collector on 127.0.0.1 notes when the whole report
// arrived and the bench when the child died. Against a collector that answers at once and
// one that never answers, beside the fixed 0.5-s sleep after the upload wait. The helper is
// the child itself (as the console is its own) or, with --console, the telvane binary.
//   tests/run-isolated.sh build/bench/crash_reporter_bench [--runs N] [--console]
#include "CrashCollector.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace {

struct Figures {
    QList<double> reportMs;
    QList<double> deathMs;
};

double percentile(QList<double> values, double fraction)
{
    if (values.isEmpty())
        return -1;
    std::sort(values.begin(), values.end());
    return values.at(qsizetype(fraction * double(values.size() - 1) + 0.5));
}

Figures measure(CrashCollector::Answer answer, int runs, const QString &helper)
{
    Figures figures;
    for (int run = 0; run < runs; ++run) {
        CrashCollector collector(answer);
        if (!collector.listen())
            qFatal("cannot listen on 127.0.0.1");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("DISPLAY");
        environment.remove("WAYLAND_DISPLAY");
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("TELVANE_WEB_HOST", collector.base());
        QProcess child;
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // Waits run the event loop itself: qWaitFor's 10-ms sleeps would blur the times.
        qint64 diedNs = 0;
        QEventLoop loop;
        QObject::connect(&child, &QProcess::finished, &loop, [&] {
            diedNs = monotonicNs();
            loop.quit();
        });
        QObject::connect(&collector, &CrashCollector::received, &loop, &QEventLoop::quit);
        QStringList arguments{QStringLiteral("null")};
        if (!helper.isEmpty())
            arguments << helper;
        child.start(QStringLiteral(CRASH_CHILD_PATH), arguments);
        QElapsedTimer waited;
        waited.start();
        while (diedNs == 0 && waited.elapsed() < 20000) {
            QTimer::singleShot(100, &loop, &QEventLoop::quit);
            loop.exec();
        }
        if (diedNs == 0)
            qFatal("the child did not die");
        if (collector.requests().isEmpty()) { // a report still on its way, or lost
            QTimer::singleShot(2000, &loop, &QEventLoop::quit);
            loop.exec();
        }
        const QByteArray out = child.readAllStandardOutput();
        const qint64 faultNs = out.left(out.indexOf('\n')).toLongLong();
        figures.deathMs << double(diedNs - faultNs) / 1e6;
        if (!collector.requests().isEmpty())
            figures.reportMs << double(collector.requests().first().receivedNs - faultNs) / 1e6;
    }
    return figures;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption runsOption("runs", "Crashes per collector.", "n", "10");
    const QCommandLineOption consoleOption("console", "Use the telvane binary as the helper.");
    parser.addOptions({runsOption, consoleOption});
    parser.addHelpOption();
    parser.process(app);
    const int runs = qMax(1, parser.value(runsOption).toInt());
    const QString helper =
        parser.isSet(consoleOption) ? QStringLiteral(TELVANE_CONSOLE_BINARY) : QString();

    std::printf("crash reporter, %d crashes per collector, helper: %s\n", runs,
                helper.isEmpty() ? "the crashing program itself" : "the telvane binary");
    std::printf("fixed sleep after the upload wait: 500 ms\n");
    const struct {
        const char *name;
        CrashCollector::Answer answer;
    } collectors[] = {{"answers at once", CrashCollector::Answer::ok},
                      {"never answers", CrashCollector::Answer::never}};
    for (const auto &collector : collectors) {
        const Figures figures = measure(collector.answer, runs, helper);
        std::printf("collector %-16s report received after the fault: median %6.1f ms, "
                    "max %6.1f ms (%lld of %d)\n",
                    collector.name, percentile(figures.reportMs, 0.5),
                    percentile(figures.reportMs, 1.0), (long long)figures.reportMs.size(), runs);
        std::printf("collector %-16s death after the fault:           median %6.1f ms, "
                    "max %6.1f ms\n",
                    collector.name, percentile(figures.deathMs, 0.5),
                    percentile(figures.deathMs, 1.0));
    }
    return 0;
}
