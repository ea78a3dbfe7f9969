// Prints how long the assistant panel takes from show() to its page's loadFinished: the first
// time in a process (cold: the web engine starts), again while it is open, and reopened after
// it was closed; and the memory of the process and its web engine processes before the panel,
// with it open and after it is hidden.
// Run: tests/run-webengine.sh tests/run-isolated.sh build/bench/assistant_bench [--runs 5]
//      [--warm 20]
#include "AssistantTestPages.h"
#include "EventLoopWait.h"
#include "LocalWebServer.h"
#include "services/windows/AssistantWebView.h"
#include "services/windows/AssistantWindowController.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unistd.h>
#include <vector>

namespace {

constexpr int loadWaitMs = 60000;

// Milliseconds from show() to loadFinished, or a negative number when it never came.
double timeShow(std::unique_ptr<AssistantWindowController> &controller, const QUrl &url)
{
    QElapsedTimer timer;
    timer.start();
    if (!controller) // as the first use of the menu item makes it
        controller = std::make_unique<AssistantWindowController>();
    QSignalSpy finished(controller->webView()->page(), &QWebEnginePage::loadFinished);
    controller->show(url);
    if (finished.isEmpty() && !finished.wait(loadWaitMs))
        return -1;
    return double(timer.nsecsElapsed()) / 1e6;
}

// Kilobytes from a "Name:   123 kB" line of a /proc file.
qint64 kilobytes(const QString &path, const QByteArray &name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).trimmed().split(' ').value(0).toLongLong();
    }
    return 0;
}

// This process and every process below it (the web engine's zygote and render processes).
QList<qint64> processTree()
{
    QHash<qint64, qint64> parentOf;
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool isPid = false;
        const qint64 pid = entry.toLongLong(&isPid);
        QFile stat(QStringLiteral("/proc/%1/stat").arg(entry));
        if (!isPid || !stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = stat.readAll();
        // The fourth field, after the command name in parentheses.
        parentOf.insert(pid, text.mid(text.lastIndexOf(')') + 2).split(' ').value(1).toLongLong());
    }
    QList<qint64> tree{getpid()};
    for (qsizetype i = 0; i < tree.size(); ++i) {
        for (auto it = parentOf.cbegin(); it != parentOf.cend(); ++it) {
            if (it.value() == tree.at(i))
                tree.append(it.key());
        }
    }
    return tree;
}

void printMemory(const char *when)
{
    qint64 treePss = 0;
    const QList<qint64> tree = processTree();
    for (qint64 pid : tree)
        treePss += kilobytes(QStringLiteral("/proc/%1/smaps_rollup").arg(pid), "Pss:");
    std::printf("memory, %s: console %.1f MB resident; with its %lld web engine processes %.1f MB "
                "proportional\n",
                when, double(kilobytes(QStringLiteral("/proc/self/status"), "VmRSS:")) / 1024,
                static_cast<long long>(tree.size() - 1), double(treePss) / 1024);
}

double median(std::vector<double> samples)
{
    std::sort(samples.begin(), samples.end());
    return samples.empty() ? 0 : samples[samples.size() / 2];
}

void printTimes(const char *what, const std::vector<double> &samples)
{
    if (samples.empty())
        return;
    std::printf(
        "show -> loadFinished, %s: median %.1f ms, min %.1f ms, max %.1f ms (%zu samples)\n", what,
        median(samples), *std::min_element(samples.begin(), samples.end()),
        *std::max_element(samples.begin(), samples.end()), samples.size());
}

int intOption(const QStringList &arguments, const QString &name, int fallback)
{
    const qsizetype at = arguments.indexOf(name);
    return at >= 0 && at + 1 < arguments.size() ? arguments.at(at + 1).toInt() : fallback;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();

    LocalWebServer server;
    if (!server.listen()) {
        std::fprintf(stderr, "assistant_bench: cannot listen on 127.0.0.1\n");
        return 1;
    }
    AssistantTestPages::serve(server);
    qputenv("TELVANE_WEB_HOST", server.base().toUtf8());
    const QUrl chat = server.url(QStringLiteral("/aichat"));
    std::unique_ptr<AssistantWindowController> controller;

    if (arguments.contains(QLatin1String("--cold-once"))) {
        std::printf("%.3f\n", timeShow(controller, chat));
        controller.reset(); // before the application object, as the console does
        return 0;
    }

    // Cold: each sample is a fresh process, whose first show starts the web engine.
    std::vector<double> cold;
    for (int i = 0; i < intOption(arguments, QStringLiteral("--runs"), 5); ++i) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--cold-once")});
        if (child.waitForFinished(2 * loadWaitMs) && child.exitCode() == 0)
            cold.push_back(child.readAllStandardOutput().trimmed().toDouble());
    }
    printTimes("cold (a fresh process each)", cold);

    printMemory("before the panel");
    std::vector<double> warm;
    timeShow(controller, chat); // starts the engine
    const int warmRuns = intOption(arguments, QStringLiteral("--warm"), 20);
    for (int i = 0; i < warmRuns; ++i)
        warm.push_back(timeShow(controller, chat));
    printTimes("warm, panel open", warm);
    EventLoopWait::runFor(2000);
    printMemory("panel open");

    // Reopened soon after closing: the page is kept.
    std::vector<double> reopened;
    for (int i = 0; i < warmRuns; ++i) {
        controller->panel()->close();
        reopened.push_back(timeShow(controller, chat));
    }
    printTimes("warm, reopened at once", reopened);
    controller->panel()->close();
    EventLoopWait::runFor(3000);
    printMemory("panel hidden, page kept");

    // A closed panel releases its page after a delay, shortened here to nothing.
    QWebEnginePage *page = controller->webView()->page();
    const auto released = [page] {
        return EventLoopWait::until(
            [page] { return page->lifecycleState() == QWebEnginePage::LifecycleState::Discarded; },
            loadWaitMs);
    };
    controller->setHiddenPageReleaseDelay(0);
    if (released()) {
        EventLoopWait::runFor(3000);
        printMemory("panel hidden, page released");
    }
    std::vector<double> afterRelease;
    for (int i = 0; i < warmRuns; ++i) {
        afterRelease.push_back(timeShow(controller, chat));
        controller->panel()->close();
        if (!released())
            break;
    }
    printTimes("reopened after the page was released", afterRelease);
    controller.reset();
    return 0;
}
