// A process that installs the crash reporter and then fails in the way its first argument
// names. Started with --crash-report it is its own helper, as the console is.
//   crash_child <scenario> [helper-path]
// Before failing it writes the CLOCK_MONOTONIC time in nanoseconds on one line.

#include "app/ConsoleOptions.h"
#include "app/CrashReportHelper.h"
#include "services/CrashReporter.h"

#include <QCoreApplication>
#include <atomic>
#include <barrier>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <time.h>
#include <unistd.h>

// Outside any unnamed namespace, so the frames can name them.
std::atomic<bool> faultInFork{false};

[[gnu::noinline]] void writeThroughNull()
{
    volatile int *volatile nowhere = nullptr;
    *nowhere = 1;
}

[[gnu::noinline]] int recurseForever(int depth)
{
    if (depth < 0) // never: keeps the compiler from calling this an endless recursion
        return 0;
    volatile char padding[512];
    padding[depth % sizeof padding] = char(depth);
    return recurseForever(depth + 1) + padding[0];
}

[[gnu::noinline]] void throwUncaught()
{
    throw std::runtime_error("the disk is on fire");
}

[[gnu::noinline]] void throwHugeReason()
{
    throw std::runtime_error(std::string(100000, 'x'));
}

[[gnu::noinline]] void crashOnWorker()
{
    std::thread worker([] { writeThroughNull(); });
    worker.join();
}

[[gnu::noinline]] void crashOnTwoThreads()
{
    std::barrier start(2);
    std::thread first([&] {
        start.arrive_and_wait();
        writeThroughNull();
    });
    std::thread second([&] {
        start.arrive_and_wait();
        writeThroughNull();
    });
    first.join();
    second.join();
}

namespace {

void stampFaultTime()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    std::printf("%lld\n", (long long)now.tv_sec * 1000000000LL + now.tv_nsec);
    std::fflush(stdout);
}

} // namespace

// Stands in for glibc's inside this process only: with "fault-in-handler" the reporter's
// own call faults, which must kill the process by SIGSEGV at once.
extern "C" pid_t _Fork() noexcept
{
    using Fork = pid_t (*)();
    static const Fork real = reinterpret_cast<Fork>(dlsym(RTLD_NEXT, "_Fork"));
    if (faultInFork.exchange(false)) // once: a nested handler would then report
        writeThroughNull();
    return real();
}

int main(int argc, char *argv[])
{
    const ConsoleOptions options = ConsoleOptions::parse(ConsoleOptions::arguments(argc, argv),
                                                         QProcessEnvironment::systemEnvironment());
    if (options.action == ConsoleOptions::Action::crashReport)
        return CrashReportHelper::run(argc, argv);
    if (argc < 2)
        return 2;
    // No core files in the test's folders.
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    QCoreApplication::setApplicationName(QStringLiteral("Telvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral("9.8.7"));
    CrashReporter::install(argc > 2 ? QString::fromLocal8Bit(argv[2])
                                    : QStringLiteral("/proc/self/exe"));

    const char *scenario = argv[1];
    stampFaultTime();
    if (!std::strcmp(scenario, "null"))
        writeThroughNull();
    else if (!std::strcmp(scenario, "abort"))
        std::abort();
    else if (!std::strcmp(scenario, "exception"))
        throwUncaught();
    else if (!std::strcmp(scenario, "huge-reason"))
        throwHugeReason();
    else if (!std::strcmp(scenario, "overflow"))
        return recurseForever(0);
    else if (!std::strcmp(scenario, "worker"))
        crashOnWorker();
    else if (!std::strcmp(scenario, "two-threads"))
        crashOnTwoThreads();
    else if (!std::strcmp(scenario, "fault-in-handler")) {
        faultInFork = true;
        std::abort();
    }
    return 3;
}
