// Prints what the dashboard and the computer detail cost while a fleet reports: N
// computers each receive statistics every 5 s through the store's statistics path
// (AppState::applySystemStats), with the console's window showing the dashboard for a
// while, then one computer's detail. Figures: the main thread's busy fraction (its CPU time
// over wall time), paints per card per report (cards whose content did not change must not
// paint), and widgets created by reports (none). Run under Xvfb with a private HOME:
//   QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24"
//       tests/run-isolated.sh build/bench/dashboard_bench > /dev/null
#include "app/MainWindow.h"
#include "state/AppState.h"
#include "state/MainWindowState.h"
#include "ui/ComputerCardView.h"
#include "ui/ComputerDetailView.h"
#include "ui/DashboardSummaryStrip.h"
#include "ui/DashboardView.h"

#include <QApplication>
#include <QChildEvent>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QHash>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <ctime>
#include <random>

namespace {

qint64 threadCpuNs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// Sees every event of the application (installed on it): counts paints per watched widget
// tree (by the tree's index) and widgets created anywhere.
class EventCounter : public QObject {
public:
    QHash<int, int> paints;
    int widgetsCreated = 0;
    bool counting = false;

    void watch(QWidget *root, int index)
    {
        root->setProperty("benchTree", index);
        for (QWidget *widget : root->findChildren<QWidget *>())
            widget->setProperty("benchTree", index);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!counting)
            return false;
        if (event->type() == QEvent::Paint) {
            const QVariant tree = watched->property("benchTree");
            if (tree.isValid())
                ++paints[tree.toInt()];
        } else if (event->type() == QEvent::ChildAdded &&
                   static_cast<QChildEvent *>(event)->child()->isWidgetType())
            ++widgetsCreated;
        return false;
    }
};

// One computer's reports: most move their load a little each time; a third report values
// whose changes the card does not show (seconds of uptime within the hour).
class Reporter {
public:
    Reporter(int index, std::mt19937 &random) : m_moves(index % 3 != 0)
    {
        m_stats.totalMemory = 32ull << 30;
        m_stats.freeMemory = (8ull + index % 16) << 30;
        m_stats.totalDiskSpace = 1000240963584;
        m_stats.freeDiskSpace = 200000000000 + quint64(index) * 1000000000;
        m_stats.osVersion = QStringLiteral("macOS 14.4.1");
        m_stats.macModel = QStringLiteral("Mac14,13");
        m_stats.cpuUsage = std::uniform_real_distribution<double>(0.05, 0.6)(random);
        m_stats.uptimeSeconds = quint64(1 + index % 9) * 86400 + 100; // 100 s into an hour
        m_stats.agentVersion = QStringLiteral("2.3.0");
        m_stats.primaryIPAddress = QStringLiteral("10.0.%1.%2").arg(index / 250).arg(index % 250);
        m_stats.loggedInUser = QStringLiteral("user%1").arg(index);
        m_stats.networkName = QStringLiteral("Office");
        m_stats.displayCount = 1 + index % 2;
        m_stats.screenLocked = false;
        m_stats.activeProcess = QStringLiteral("Finder");
    }

    SystemStats next(std::mt19937 &random)
    {
        *m_stats.uptimeSeconds += 5;
        if (m_moves) {
            const double step = std::uniform_real_distribution<double>(-0.05, 0.05)(random);
            m_stats.cpuUsage = std::clamp(*m_stats.cpuUsage + step, 0.01, 0.99);
            m_stats.freeMemory +=
                std::uniform_int_distribution<qint64>(-(64 << 20), 64 << 20)(random);
        }
        return m_stats;
    }

private:
    bool m_moves;
    SystemStats m_stats;
};

struct Window {
    double busy = 0;
    int reports = 0;
    int changedReports = 0;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOptions(
        {{"computers", "Computers in the list.", "N", "200"},
         {"seconds", "How long the dashboard shows.", "S", "60"},
         {"detail-seconds", "How long the detail shows.", "S", "20"},
         {"interval", "Seconds between two reports of one computer.", "S", "5"},
         {"window-height", "Height of the window (0: tall enough for every card to be on screen).",
          "H", "0"}});
    parser.process(app);
    const int count = std::max(1, parser.value("computers").toInt());
    const int seconds = std::max(5, parser.value("seconds").toInt());
    const int detailSeconds = std::max(5, parser.value("detail-seconds").toInt());
    const double interval = std::max(0.1, parser.value("interval").toDouble());

    std::mt19937 random(27);
    AppState state;
    QList<RemoteComputer> computers;
    QList<Reporter> reporters;
    for (int i = 0; i < count; ++i) {
        RemoteComputer c;
        c.name = QStringLiteral("Computer %1").arg(i + 1, 3, 10, QLatin1Char('0'));
        c.host = QStringLiteral("10.0.%1.%2").arg(i / 250).arg(i % 250);
        c.isConnected = true;
        reporters.append(Reporter(i, random));
        c.systemStats = reporters.last().next(random);
        computers.append(c);
    }
    state.setComputers(computers);

    MainWindow window(state);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) {
        std::fprintf(stderr, "no window (run under Xvfb: QT_QPA_PLATFORM=xcb xvfb-run -a ...)\n");
        return 1;
    }
    // By default tall enough for every card to be on screen, so any repaint of any card
    // is seen.
    QWidget *content = window.dashboard()->cards().first()->parentWidget();
    QTest::qWait(200);
    const int height = parser.value("window-height").toInt();
    window.resize(1000, height > 0 ? height : std::min(30000, content->sizeHint().height() + 200));
    QTest::qWait(1000);
    int onScreen = 0;
    for (ComputerCardView *card : window.dashboard()->cards())
        onScreen += !card->visibleRegion().isEmpty();

    EventCounter counter;
    app.installEventFilter(&counter);
    const QList<ComputerCardView *> cards = window.dashboard()->cards();
    for (int i = 0; i < cards.size(); ++i)
        counter.watch(cards[i], i);
    counter.watch(window.dashboard()->summaryStrip(), -1);

    // Reports spread evenly: one computer every interval / count seconds, round robin.
    int nextComputer = 0;
    QSet<int> changedCards;
    Window *current = nullptr;
    QTimer reports;
    reports.setTimerType(Qt::PreciseTimer);
    reports.setInterval(std::max(1, int(interval * 1000 / count)));
    QObject::connect(&reports, &QTimer::timeout, [&] {
        const int i = nextComputer;
        nextComputer = (nextComputer + 1) % count;
        const ComputerCardContent before = cards[i]->content();
        state.applySystemStats(computers[i].id, reporters[i].next(random));
        if (!current)
            return;
        ++current->reports;
        if (cards[i]->content() != before) {
            ++current->changedReports;
            changedCards.insert(i);
        }
    });
    reports.start();
    QTest::qWait(int(interval * 1000)); // one round, so every card is in its steady state

    const auto measure = [&](Window &result, int forSeconds) {
        current = &result;
        counter.paints.clear();
        counter.widgetsCreated = 0;
        counter.counting = true;
        const qint64 cpuBefore = threadCpuNs();
        QElapsedTimer wall;
        wall.start();
        QTest::qWait(forSeconds * 1000);
        result.busy = double(threadCpuNs() - cpuBefore) / double(wall.nsecsElapsed());
        counter.counting = false;
        current = nullptr;
    };

    const qsizetype widgetsBefore = QApplication::allWidgets().size();
    Window dashboard;
    measure(dashboard, seconds);
    int changedPaints = 0, unchangedPaints = 0, unchangedCards = 0;
    for (int i = 0; i < cards.size(); ++i) {
        if (changedCards.contains(i))
            changedPaints += counter.paints.value(i);
        else {
            unchangedPaints += counter.paints.value(i);
            ++unchangedCards;
        }
    }
    const int stripPaints = counter.paints.value(-1);
    const int dashboardWidgets = counter.widgetsCreated;
    const qsizetype widgetsAfter = QApplication::allWidgets().size();

    std::fprintf(stderr,
                 "Dashboard, %d computers (%d cards on screen), statistics every %.0f s each, "
                 "%d s:\n"
                 "  main thread busy (its CPU time over wall time): %.2f %% (goal < 2 %%)\n"
                 "  reports: %d, of which %d changed what their card shows\n"
                 "  paints of cards whose content changed: %.2f per changed report\n"
                 "  paints of the %d cards whose content never changed: %d (goal 0)\n"
                 "  paints of the summary strip: %d (no count changed)\n"
                 "  widgets created during the reports: %d (goal 0); widgets %lld before, "
                 "%lld after\n",
                 count, onScreen, interval, seconds, dashboard.busy * 100, dashboard.reports,
                 dashboard.changedReports,
                 dashboard.changedReports ? double(changedPaints) / dashboard.changedReports : 0.0,
                 unchangedCards, unchangedPaints, stripPaints, dashboardWidgets,
                 qint64(widgetsBefore), qint64(widgetsAfter));

    // The detail of a computer whose load moves, in the window as a person sees it.
    window.resize(1000, 700);
    window.state()->select(NavigationItem::computer(computers[1].id));
    QTest::qWait(1000);
    counter.watch(window.detail(), -2);
    Window detail;
    measure(detail, detailSeconds);
    const double ownReports = detailSeconds / interval;
    std::fprintf(stderr,
                 "Detail of one computer, the dashboard hidden behind it, %d s:\n"
                 "  main thread busy: %.2f %% (goal < 2 %%)\n"
                 "  paints of the detail: %d, %.2f per report of its computer (%.0f reports)\n"
                 "  widgets created during the reports: %d (goal 0)\n",
                 detailSeconds, detail.busy * 100, counter.paints.value(-2),
                 counter.paints.value(-2) / ownReports, ownReports, counter.widgetsCreated);
    reports.stop();
    state.waitForPendingWrites();
    return 0;
}
