// Prints what the log viewer costs while the log streams: the viewer shows a full log
// (5000 entries, some of 10 kB) and another thread logs 200 entries a second for 30 s, so
// every append also drops the oldest entry. Figures: the main thread's busy fraction (its
// CPU time over wall time), the time of each repaint of the list (frame time) and the
// number of model resets (none). Run under Xvfb with a private HOME:
//   QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24"
//       tests/run-isolated.sh build/bench/logs_view_bench [--seconds 30]
#include "model/LogManager.h"
#include "presentation/LogListModel.h"
#include "ui/LogsView.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QListView>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <thread>
#include <unistd.h>

namespace {

qint64 threadCpuNs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// Times every paint of one widget, the whole delivery included.
class TimingApplication : public QApplication {
public:
    using QApplication::QApplication;
    QObject *watched = nullptr;
    QList<double> milliseconds;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (receiver != watched || event->type() != QEvent::Paint)
            return QApplication::notify(receiver, event);
        QElapsedTimer timer;
        timer.start();
        const bool handled = QApplication::notify(receiver, event);
        milliseconds.append(double(timer.nsecsElapsed()) / 1e6);
        return handled;
    }
};

QString entryText(int i)
{
    // Every 50th message is 10 kB; some have no brackets of their own, some many.
    if (i % 50 == 0)
        return QStringLiteral("payload %1 ").arg(i) + QString(10 * 1024, QLatin1Char('x'));
    if (i % 7 == 0)
        return QStringLiteral("] ] ] bracketed [%1] ] message").arg(i);
    return QStringLiteral("Received system statistics from computer %1").arg(i % 200);
}

double percentile(QList<double> values, double p)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values.at(std::min<qsizetype>(values.size() - 1, qsizetype(p * values.size())));
}

} // namespace

int main(int argc, char **argv)
{
    TimingApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("seconds"), QStringLiteral("How long entries arrive."),
                      QStringLiteral("seconds"), QStringLiteral("30")});
    parser.addOption({QStringLiteral("rate"), QStringLiteral("Entries a second."),
                      QStringLiteral("rate"), QStringLiteral("200")});
    parser.process(app);
    const int seconds = std::max(1, parser.value(QStringLiteral("seconds")).toInt());
    const int rate = std::max(1, parser.value(QStringLiteral("rate")).toInt());

    // The log mirrors every entry to standard output; keep the figures readable.
    const int figures = dup(STDOUT_FILENO);
    if (std::freopen("/dev/null", "w", stdout) == nullptr)
        return 1;

    LogManager &log = LogManager::shared();
    for (int i = 0; i < LogManager::maxLogs; ++i)
        log.log(entryText(i), i % 11 == 0 ? QStringLiteral("WARN") : QStringLiteral("STATS"));
    while (log.logs().size() < LogManager::maxLogs)
        QTest::qWait(10);

    LogsView view(log);
    view.resize(1000, 700);
    view.show();
    if (!QTest::qWaitForWindowExposed(&view))
        return 1;
    QTest::qWait(200);
    int resets = 0;
    QObject::connect(view.model(), &QAbstractItemModel::modelReset, [&resets] { ++resets; });
    app.watched = view.list()->viewport();
    const QList<double> &paints = app.milliseconds;

    std::atomic<bool> running = true;
    std::atomic<int> sent = 0;
    const qint64 cpuBefore = threadCpuNs();
    QElapsedTimer wall;
    wall.start();
    std::thread writer([&] {
        const auto period = std::chrono::nanoseconds(1000000000 / rate);
        auto next = std::chrono::steady_clock::now();
        for (int i = LogManager::maxLogs; running; ++i) {
            log.log(entryText(i), i % 13 == 0 ? QStringLiteral("ERROR") : QStringLiteral("STATS"));
            ++sent;
            next += period;
            std::this_thread::sleep_until(next);
        }
    });
    QTest::qWait(seconds * 1000);
    running = false;
    writer.join();
    QTest::qWait(100);
    const double busy = double(threadCpuNs() - cpuBefore) / double(wall.nsecsElapsed());

    std::fflush(stdout);
    dup2(figures, STDOUT_FILENO);
    std::printf("log viewer, %d entries shown, %d entries/s for %d s (%d sent)\n",
                LogManager::maxLogs, rate, seconds, sent.load());
    std::printf("main thread busy: %.1f %%\n", busy * 100);
    std::printf("frames: %lld, frame time mean %.2f ms, p95 %.2f ms, max %.2f ms\n",
                qlonglong(paints.size()),
                paints.isEmpty()
                    ? 0.0
                    : std::accumulate(paints.begin(), paints.end(), 0.0) / double(paints.size()),
                percentile(paints, 0.95), percentile(paints, 1.0));
    std::printf("model resets: %d, rows: %d\n", resets, view.model()->rowCount());
    return 0;
}
