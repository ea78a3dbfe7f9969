// Prints the costs of the computer list's JSON form, of one save on the main thread and
// of the in-app log. Run: build/bench/store_bench (with a private HOME; see the docs).
#include "model/ComputerJson.h"
#include "model/LogManager.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <thread>
#include <unistd.h>

namespace {

RemoteComputer fullComputer(int i)
{
    RemoteComputer c;
    c.name = QStringLiteral("Computer %1").arg(i);
    c.host = QStringLiteral("10.0.%1.%2").arg(i / 250).arg(i % 250);
    c.username = QStringLiteral("admin");
    c.password = QStringLiteral("secret");
    c.description = QStringLiteral("Rack %1").arg(i % 7);
    c.tags = {QStringLiteral("lab"), QStringLiteral("floor-2")};
    c.lastConnected = QDateTime::currentDateTimeUtc();
    SystemStats s;
    s.totalMemory = 34359738368ULL;
    s.freeMemory = 8589934592ULL;
    s.totalDiskSpace = 1000000000000ULL;
    s.freeDiskSpace = 400000000000ULL;
    s.osVersion = QStringLiteral("Debian GNU/Linux 12 (bookworm)");
    s.macModel = QStringLiteral("Linux computer");
    s.cpuUsage = 0.37;
    s.activeProcess = QStringLiteral("firefox");
    s.uptimeSeconds = 86400;
    s.agentVersion = QStringLiteral("0.1.0");
    s.screenCaptureAuthorized = s.accessibilityAuthorized = s.screenLocked = false;
    s.primaryIPAddress = c.host;
    s.loggedInUser = QStringLiteral("admin");
    s.networkName = QStringLiteral("computer-%1").arg(i);
    s.displayCount = 1;
    s.mainDisplayResolution = QStringLiteral("1920x1080");
    s.serialNumber = QStringLiteral("SN%1").arg(i);
    s.hardwareUUID = QUuid::createUuid().toString(QUuid::WithoutBraces);
    s.fileVaultEnabled = s.sipEnabled = s.gatekeeperEnabled = s.mdmEnrolled = true;
    s.lastBootTime = QDateTime::currentDateTimeUtc().addDays(-1);
    s.lastSleepCause = QStringLiteral("idle");
    s.lastWakeCause = QStringLiteral("user");
    QList<DiskVolumeInfo> volumes;
    for (int v = 0; v < 8; ++v)
        volumes.append({QStringLiteral("vol%1").arg(v), QStringLiteral("/mnt/vol%1").arg(v),
                        500000000000ULL, 250000000000ULL});
    s.diskVolumes = volumes;
    c.systemStats = s;
    return c;
}

double medianMs(std::vector<double> samples)
{
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

long residentKb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QList<RemoteComputer> computers;
    for (int i = 0; i < 1000; ++i)
        computers.append(fullComputer(i));

    std::vector<double> encode, decode;
    QByteArray json;
    for (int round = 0; round < 15; ++round) {
        QElapsedTimer t;
        t.start();
        json = ComputerJson::encodeList(computers);
        encode.push_back(t.nsecsElapsed() / 1e6);
        t.restart();
        auto decoded = ComputerJson::decodeList(json);
        decode.push_back(t.nsecsElapsed() / 1e6);
        if (!decoded || decoded->size() != 1000)
            return 1;
    }
    std::printf("JSON, 1000 computers with full statistics and 8 volumes (%.1f MB):\n",
                json.size() / 1e6);
    std::printf("  encode  median %.2f ms\n  decode  median %.2f ms\n", medianMs(encode),
                medianMs(decode));

    {
        AppState state;
        state.setComputers(computers);
        std::vector<double> saves;
        for (int round = 0; round < 50; ++round) {
            QElapsedTimer t;
            t.start();
            state.saveComputers();
            saves.push_back(t.nsecsElapsed() / 1e6);
            state.waitForPendingWrites();
        }
        std::printf("Save of 1000 computers, main-thread cost: median %.3f ms, max %.3f ms "
                    "(encoding and writing run on the persistence queue)\n",
                    medianMs(saves), *std::max_element(saves.begin(), saves.end()));
    }

    // Log: 100,000 entries from 4 threads; stdout goes to /dev/null for the measurement.
    if (!std::freopen("/dev/null", "w", stdout))
        return 1;
    const long before = residentKb();
    QElapsedTimer t;
    t.start();
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n) {
        threads.emplace_back([n] {
            for (int i = 0; i < 25000; ++i)
                LogManager::shared().log(
                    QStringLiteral("Received screen capture for computer Studio %1: %2 bytes")
                        .arg(n)
                        .arg(i),
                    QStringLiteral("SCREEN"));
        });
    }
    for (auto &thread : threads)
        thread.join();
    const double callMs = t.nsecsElapsed() / 1e6;
    while (LogManager::shared().logs().size() < LogManager::maxLogs)
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    const double totalMs = t.nsecsElapsed() / 1e6;
    const long after = residentKb();
    std::fprintf(stderr,
                 "Log, 100,000 entries from 4 threads: calls %.0f ms (%.0f entries/s), "
                 "appended on the main thread after %.0f ms; %lld entries kept; resident "
                 "memory %ld kB before, %ld kB after\n",
                 callMs, 100000 / (callMs / 1000), totalMs,
                 qint64(LogManager::shared().logs().size()), before, after);
    return 0;
}
