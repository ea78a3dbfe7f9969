#include "CrashReporter.h"

#include "CrashTextBuffer.h"

#include <QCoreApplication>
#include <QSysInfo>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/utsname.h>
#include <time.h>
#include <typeinfo>
#include <unistd.h>

extern char **environ;

namespace {

// Everything the handlers use is prepared here by install(): the handlers only write.
struct Prepared {
    char header[2048]; // "Crash Report" down to the text after "Timestamp: "
    std::size_t headerSize = 0;
    char helperPath[4096];
    char helperArgument[16] = "--crash-report";
    char *helperArgv[3] = {};
};

Prepared prepared;
// Cut so that "Call Stack:" always fits after the header and the exception's texts.
constexpr std::size_t maxNameLength = 2048;
constexpr std::size_t maxReasonLength = 8192;
char reportStorage[sizeof(Prepared::header) + maxNameLength + maxReasonLength + 256];
void *frames[CrashReporter::maxFrames];
alignas(16) char alternateStack[128 * 1024];

bool installed = false;
std::terminate_handler previousTerminate = nullptr;
struct sigaction previousPipeAction;

// The thread that reports; 0 while none does. Lock-free, so safe in a handler.
std::atomic<pthread_t> owner{0};
static_assert(std::atomic<pthread_t>::is_always_lock_free);

// Copies a Qt text into fixed storage as UTF-8, cut to fit.
void copyText(const QString &text, char *storage, std::size_t capacity)
{
    const QByteArray bytes = text.toUtf8();
    const std::size_t length = std::min<std::size_t>(bytes.size(), capacity - 1);
    std::memcpy(storage, bytes.constData(), length);
    storage[length] = '\0';
}

QString orUnknown(const QString &value)
{
    return value.isEmpty() ? QStringLiteral("Unknown") : value;
}

void prepare(const QString &helperPath)
{
    utsname system{};
    const QString kernel = uname(&system) == 0
                               ? QString::fromUtf8(system.sysname) + QLatin1Char(' ') +
                                     QString::fromUtf8(system.release)
                               : QSysInfo::kernelVersion();
    const QString os = QSysInfo::prettyProductName() + QStringLiteral(", ") + kernel;
    const QString header =
        QStringLiteral("Crash Report\n============\nApp: ") +
        orUnknown(QCoreApplication::applicationName()) + QStringLiteral("\nVersion: ") +
        orUnknown(QCoreApplication::applicationVersion()) + QStringLiteral("\nmacOS Version: ") +
        os + QStringLiteral("\nTimestamp: ");
    copyText(header, prepared.header, sizeof prepared.header);
    prepared.headerSize = std::strlen(prepared.header);
    copyText(helperPath, prepared.helperPath, sizeof prepared.helperPath);
    prepared.helperArgv[0] = prepared.helperPath;
    prepared.helperArgv[1] = prepared.helperArgument;
    prepared.helperArgv[2] = nullptr;
}

// --- From here on: the crash path. Only async-signal-safe calls, plus _Fork, pipe2 and
// backtrace/backtrace_symbols_fd (libgcc loaded by install(), so they do not allocate).

std::int64_t monotonicMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

// poll() as a sleep and as a bounded wait: nanosleep is not on the async-signal-safe list.
// Returns true when `fd` (if any) became readable or hung up before the deadline.
bool waitFor(int fd, short events, std::int64_t deadlineMs)
{
    for (;;) {
        const std::int64_t left = deadlineMs - monotonicMs();
        if (left <= 0)
            return false;
        pollfd entry{fd, events, 0};
        const int ready = poll(fd >= 0 ? &entry : nullptr, fd >= 0 ? 1 : 0, int(left));
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
}

void sleepMs(int milliseconds)
{
    waitFor(-1, 0, monotonicMs() + milliseconds);
}

void writeAll(int fd, const char *bytes, std::size_t length, std::int64_t deadlineMs)
{
    while (length > 0) {
        const ssize_t written = write(fd, bytes, length);
        if (written > 0) {
            bytes += written;
            length -= std::size_t(written);
        } else if (written < 0 && errno == EINTR) {
            continue;
        } else if (written < 0 && errno == EAGAIN) {
            if (!waitFor(fd, POLLOUT, deadlineMs))
                return;
        } else {
            return; // the helper is gone: the report is lost
        }
    }
}

void closeBoth(int fds[2])
{
    close(fds[0]);
    close(fds[1]);
}

// Starts the helper, writes it the report (text, then the frames), waits for its byte and
// then the fixed sleep. Any failure loses the report; the caller still dies afterwards.
void runCrashSequence(const CrashTextBuffer &text)
{
    const int frameCount = backtrace(frames, CrashReporter::maxFrames);
    const std::int64_t uploadDeadline = monotonicMs() + CrashReporter::uploadWaitMs;
    int toHelper[2];
    int fromHelper[2];
    if (pipe2(toHelper, O_CLOEXEC) != 0) {
        sleepMs(CrashReporter::sleepAfterMs);
        return;
    }
    if (pipe2(fromHelper, O_CLOEXEC) != 0) {
        closeBoth(toHelper);
        sleepMs(CrashReporter::sleepAfterMs);
        return;
    }
    // Room for the whole report, so a helper that never reads cannot block the writer.
    fcntl(toHelper[1], F_SETPIPE_SZ, 1 << 20);
    fcntl(toHelper[1], F_SETFL, O_NONBLOCK);

    const pid_t pid = _Fork();
    if (pid == 0) {
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        // Above 2 first: a pipe end that already is 0 or 1 (the console's own were closed)
        // would otherwise keep its close-on-exec flag or be overwritten.
        const int input = fcntl(toHelper[0], F_DUPFD, STDERR_FILENO + 1);
        const int output = fcntl(fromHelper[1], F_DUPFD, STDERR_FILENO + 1);
        if (input >= 0 && output >= 0 && dup2(input, STDIN_FILENO) >= 0 &&
            dup2(output, STDOUT_FILENO) >= 0) {
            // The helper must not keep the crashed console's sockets and files open while
            // its alert shows.
            close_range(STDERR_FILENO + 1, ~0U, 0);
            execve(prepared.helperPath, prepared.helperArgv, environ);
        }
        _exit(127);
    }
    close(toHelper[0]);
    close(fromHelper[1]);
    if (pid > 0) {
        writeAll(toHelper[1], text.data(), text.size(), uploadDeadline);
        backtrace_symbols_fd(frames, frameCount, toHelper[1]);
    }
    close(toHelper[1]);
    // One byte, or the helper's end closing when it could not start or died.
    if (pid > 0)
        waitFor(fromHelper[0], POLLIN, uploadDeadline);
    close(fromHelper[0]);
    sleepMs(CrashReporter::sleepAfterMs);
}

// True for the thread that reports: the first to get here, again for its second sequence.
bool claimReporting()
{
    const pthread_t self = pthread_self();
    pthread_t expected = 0;
    return owner.compare_exchange_strong(expected, self) || pthread_equal(expected, self);
}

CrashTextBuffer startReport()
{
    CrashTextBuffer text(reportStorage, sizeof reportStorage);
    text.append(prepared.header, prepared.headerSize);
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    text.appendUtcTimestamp(now.tv_sec).append("\n\n");
    return text;
}

void dieBy(int signalNumber)
{
    struct sigaction fallback {};
    fallback.sa_handler = SIG_DFL;
    sigemptyset(&fallback.sa_mask);
    sigaction(signalNumber, &fallback, nullptr);
    // Still blocked here: delivered, with the default action, when the handler returns
    // (a fault re-executes its instruction and dies the same way).
    raise(signalNumber);
}

void onSignal(int signalNumber)
{
    const int savedErrno = errno;
    if (claimReporting()) {
        CrashTextBuffer text = startReport();
        text.append("Signal Type: ");
        CrashReporter::appendSignalName(text, signalNumber);
        text.append("\n\nCall Stack:\n");
        runCrashSequence(text);
    } else {
        sleepMs(CrashReporter::otherThreadWaitMs);
    }
    dieBy(signalNumber);
    errno = savedErrno;
}

// --- End of the signal path. The terminate handler is no signal handler: it may allocate.

void onTerminate()
{
    if (claimReporting()) {
        CrashTextBuffer text = startReport();
        const std::type_info *type = abi::__cxa_current_exception_type();
        text.append("Exception Type: ");
        if (type) {
            int status = -1;
            char *demangled = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
            const char *name = status == 0 && demangled ? demangled : type->name();
            text.append(name, strnlen(name, maxNameLength));
            std::free(demangled);
        } else {
            text.append("Unknown");
        }
        text.append("\nException Reason: ");
        const char *reason = nullptr;
        if (const std::exception_ptr current = std::current_exception()) {
            try {
                std::rethrow_exception(current);
            } catch (const std::exception &exception) {
                reason = exception.what();
            } catch (...) {
            }
        }
        if (reason && *reason)
            text.append(reason, strnlen(reason, maxReasonLength));
        else
            text.append("Unknown");
        text.append("\n\nCall Stack:\n");
        runCrashSequence(text);
    }
    if (previousTerminate)
        previousTerminate();
    std::abort();
}

} // namespace

void CrashReporter::install(const QString &helperPath)
{
    if (installed)
        return;
    installed = true;
    prepare(helperPath);

    // Only this thread gets an alternate stack, so a stack overflow here is still reported.
    stack_t current{};
    if (sigaltstack(nullptr, &current) == 0 && (current.ss_flags & SS_DISABLE)) {
        stack_t stack{};
        stack.ss_sp = alternateStack;
        stack.ss_size = sizeof alternateStack;
        sigaltstack(&stack, nullptr);
    }
    // backtrace() loads libgcc on first use, which allocates: never first in a handler.
    backtrace(frames, 1);

    // A helper that died must not kill the writer by SIGPIPE.
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigemptyset(&ignore.sa_mask);
    sigaction(SIGPIPE, &ignore, &previousPipeAction);

    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    // A fault inside the handler then kills at once, without recursion or a second report.
    for (const int signalNumber : handledSignals)
        sigaddset(&action.sa_mask, signalNumber);
    for (const int signalNumber : handledSignals)
        sigaction(signalNumber, &action, nullptr);
    previousTerminate = std::set_terminate(onTerminate);
}

void CrashReporter::uninstall()
{
    if (!installed)
        return;
    installed = false;
    std::set_terminate(previousTerminate);
    previousTerminate = nullptr;
    struct sigaction fallback {};
    fallback.sa_handler = SIG_DFL;
    sigemptyset(&fallback.sa_mask);
    for (const int signalNumber : handledSignals)
        sigaction(signalNumber, &fallback, nullptr);
    sigaction(SIGPIPE, &previousPipeAction, nullptr);
}

bool CrashReporter::isInstalled()
{
    return installed;
}

std::terminate_handler CrashReporter::previousTerminateHandler()
{
    return previousTerminate;
}

void CrashReporter::appendSignalName(CrashTextBuffer &text, int signalNumber)
{
    switch (signalNumber) {
    case SIGILL:
        text.append("SIGILL (Illegal Instruction)");
        return;
    case SIGTRAP:
        text.append("SIGTRAP (Trace Trap)");
        return;
    case SIGABRT:
        text.append("SIGABRT (Abort)");
        return;
    case SIGFPE:
        text.append("SIGFPE (Floating Point Exception)");
        return;
    case SIGBUS:
        text.append("SIGBUS (Bus Error)");
        return;
    case SIGSEGV:
        text.append("SIGSEGV (Segmentation Violation)");
        return;
    default:
        text.append("Signal ").appendDecimal(signalNumber);
    }
}

QString CrashReporter::signalName(int signalNumber)
{
    char storage[64];
    CrashTextBuffer text(storage, sizeof storage);
    appendSignalName(text, signalNumber);
    return QString::fromLatin1(text.data(), qsizetype(text.size()));
}
