// Prints how long the add form takes to show 300 announced agents and what discovery costs
// the main thread. Needs the private network of dnssd-namespace.sh:
//   tests/run-isolated.sh bash tests/integration/dnssd-namespace.sh build/bench/discovery_bench
#include "DnsSdTestPublisher.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "discovery/avahi/AvahiDiscoveryBackend.h"
#include "discovery/forms/AddComputerView.h"
#include "discovery/forms/DiscoveredServerListModel.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>

namespace {

constexpr int serviceCount = 300;
constexpr quint16 firstPort = 29200;

// Wall time of every event the main thread handles, blocked time included: while a browse
// runs, nothing but discovery works on this thread.
class TimedApplication : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth++ > 0) {
            const bool handled = QCoreApplication::notify(receiver, event);
            --m_depth;
            return handled;
        }
        QElapsedTimer timer;
        timer.start();
        const bool handled = QCoreApplication::notify(receiver, event);
        const qint64 spent = timer.nsecsElapsed();
        --m_depth;
        busyNs += spent;
        longestNs = std::max(longestNs, spent);
        ++events;
        return handled;
    }

    void reset() { busyNs = longestNs = events = 0; }

    qint64 busyNs = 0;
    qint64 longestNs = 0;
    qint64 events = 0;

private:
    int m_depth = 0;
};

struct Run {
    double secondsToAllRows = -1;
    double mainThreadMs = 0;
    double longestEventMs = 0;
    qint64 events = 0;
};

// One add form with its own manager and Avahi client, from opening until all rows show.
Run browse(TimedApplication &app, AppState &state)
{
    BonjourDiscoveryManager discovery(std::make_unique<AvahiDiscoveryBackend>());
    AddComputerView form(state, discovery);
    QEventLoop loop;
    QObject::connect(&form.rows(), &QAbstractItemModel::rowsInserted, &loop, [&] {
        if (form.rows().rowCount() == serviceCount)
            loop.quit();
    });
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);

    Run run;
    app.reset();
    QElapsedTimer clock;
    clock.start();
    form.appear();
    const qint64 startNs = clock.nsecsElapsed();
    loop.exec();
    if (form.rows().rowCount() == serviceCount)
        run.secondsToAllRows = double(clock.nsecsElapsed()) / 1e9;
    QElapsedTimer stopTimer;
    stopTimer.start();
    form.dismiss();
    const qint64 stopNs = stopTimer.nsecsElapsed();
    run.mainThreadMs = double(app.busyNs + startNs + stopNs) / 1e6;
    run.longestEventMs = double(std::max({app.longestNs, startNs, stopNs})) / 1e6;
    run.events = app.events;
    return run;
}

void print(const char *title, const Run &run)
{
    std::printf("%s\n  all %d rows shown after: %.2f s\n  main thread on discovery: %.1f ms "
                "(%lld events, longest %.2f ms)\n",
                title, serviceCount, run.secondsToAllRows, run.mainThreadMs,
                static_cast<long long>(run.events), run.longestEventMs);
}

} // namespace

int main(int argc, char *argv[])
{
    TimedApplication app(argc, argv);
    if (qEnvironmentVariableIsEmpty("TELVANE_DNSSD_HOST")) {
        std::fprintf(stderr, "run inside tests/integration/dnssd-namespace.sh\n");
        return 2;
    }
    DnsSdTestPublisher publisher;
    for (int i = 0; i < serviceCount; ++i) {
        const QByteArray name = "name=Simulated " + QByteArray::number(i);
        if (publisher.publish(QStringLiteral("Agent %1").arg(i), quint16(firstPort + i),
                              {name, "hostname=sim-" + QByteArray::number(i), "version=0.1.0"}) <
            0) {
            std::fprintf(stderr, "cannot publish service %d\n", i);
            return 1;
        }
    }
    AppState state;
    std::printf("%d services on %d ports, one entry group each\n", serviceCount, serviceCount);
    print("Form opened while they announce (the daemon still probing them):", browse(app, state));
    for (int i = 1; i <= 3; ++i)
        print(QStringLiteral("Form opened with all announced, run %1:").arg(i).toUtf8().constData(),
              browse(app, state));
    state.waitForPendingWrites();
    return 0;
}
