// Throughput of the installer download against curl on the same file in the same run, and the
// main thread's busy fraction while the download runs (its CPU time over the wall time; the
// web engine's browser thread is the main thread, so its work counts too). The file comes from
// a separate server process on 127.0.0.1, so serving it costs the console nothing.
// Run: tests/run-webengine.sh tests/run-isolated.sh build/bench/installer_download_bench
//      [--mib 512] [--runs 3]
#include "services/DownloadPhase.h"
#include "services/windows/DiskImageDownloadHostView.h"
#include "services/windows/DiskImageDownloadSession.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace {

// User and system CPU seconds of the calling thread.
std::pair<double, double> threadCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    const auto seconds = [](const timeval &t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return {seconds(usage.ru_utime), seconds(usage.ru_stime)};
}

bool writeFile(const QString &path, qint64 bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray block(1024 * 1024, '\0');
    for (qsizetype i = 0; i < block.size(); ++i)
        block[i] = char((i * 7919) >> 5);
    for (qint64 written = 0; written < bytes; written += block.size()) {
        if (file.write(block) != block.size())
            return false;
    }
    return true;
}

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

bool waitForPort(quint16 port)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        if (socket.waitForConnected(100))
            return true;
        QThread::msleep(50);
    }
    return false;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const auto option = [&args](const char *name, int fallback) {
        const qsizetype at = args.indexOf(QLatin1String(name));
        return at >= 0 && at + 1 < args.size() ? args[at + 1].toInt() : fallback;
    };
    const qint64 bytes = qint64(option("--mib", 512)) * 1024 * 1024;
    const int runs = option("--runs", 3);

    QTemporaryDir served;
    const QString path = served.filePath(QStringLiteral("Telvane.dmg"));
    if (!writeFile(path, bytes)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        return 1;
    }
    const quint16 port = freePort();
    QProcess server;
    server.setWorkingDirectory(served.path());
    server.start(QStringLiteral("python3"),
                 {QStringLiteral("-m"), QStringLiteral("http.server"), QStringLiteral("--bind"),
                  QStringLiteral("127.0.0.1"), QString::number(port)});
    if (!waitForPort(port)) {
        std::fprintf(stderr, "the file server did not start\n");
        return 1;
    }
    const QString url = QStringLiteral("http://127.0.0.1:%1/Telvane.dmg").arg(port);
    const QString downloads = QDir::home().filePath(QStringLiteral("Downloads"));

    DiskImageDownloadSession session;
    DiskImageDownloadHostView host(&session);
    if (!host.webView()) {
        std::fprintf(stderr, "the web engine cannot run here\n");
        return 1;
    }

    std::vector<double> curlRates, sessionRates, busy;
    for (int run = 0; run < runs; ++run) {
        QTemporaryDir target;
        QElapsedTimer timer;
        timer.start();
        const int curl =
            QProcess::execute(QStringLiteral("curl"), {QStringLiteral("-sS"), QStringLiteral("-o"),
                                                       target.filePath(QStringLiteral("c")), url});
        const double curlSeconds = double(timer.nsecsElapsed()) / 1e9;
        if (curl != 0) {
            std::fprintf(stderr, "curl failed\n");
            return 1;
        }
        curlRates.push_back(double(bytes) / curlSeconds / 1e6);

        QEventLoop loop;
        QObject::connect(&session, &DiskImageDownloadSession::phaseChanged, &loop,
                         [&loop](const DownloadPhase &phase) {
                             if (!phase.isActive())
                                 loop.quit();
                         });
        const auto [userBefore, systemBefore] = threadCpuSeconds();
        timer.restart();
        session.start(QUrl(url));
        loop.exec();
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        const auto [userAfter, systemAfter] = threadCpuSeconds();
        const double cpu = (userAfter - userBefore) + (systemAfter - systemBefore);
        if (session.phase().kind() != DownloadPhase::Kind::finished) {
            std::fprintf(stderr, "download failed: %s\n", qPrintable(session.phase().message()));
            return 1;
        }
        sessionRates.push_back(double(bytes) / seconds / 1e6);
        busy.push_back(cpu / seconds);
        QFile::remove(session.phase().fileURL().toLocalFile());
        std::printf("run %d: curl %.0f MB/s, session %.0f MB/s, main thread busy %.1f %% "
                    "(user %.1f %%, system %.1f %%)\n",
                    run + 1, curlRates.back(), sessionRates.back(), busy.back() * 100,
                    (userAfter - userBefore) / seconds * 100,
                    (systemAfter - systemBefore) / seconds * 100);
    }
    const double ratio = median(sessionRates) / median(curlRates);
    std::printf("file %lld MiB, %d runs (medians)\n", bytes / 1024 / 1024, runs);
    std::printf("curl:             %.0f MB/s\n", median(curlRates));
    std::printf("download session: %.0f MB/s (%.2f of curl; goal >= 0.8)\n", median(sessionRates),
                ratio);
    std::printf("main thread busy: %.1f %% (goal <= 5 %%)\n", median(busy) * 100);
    server.kill();
    server.waitForFinished();
    QDir(downloads).removeRecursively();
    return 0;
}
