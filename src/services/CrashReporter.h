#pragma once

#include <QString>
#include <array>
#include <csignal>
#include <exception>

class CrashTextBuffer;

// Turns a fatal signal or an uncaught exception into a crash report, hands it to a fresh
// helper process (`telvane --crash-report`) that uploads it and tells the user, then lets
// the process die as it would have without the reporter. Nothing is written to disk.
//
// The dying process only writes: its handlers build the report in static storage, start
// the helper with _Fork and execve, write the report into a pipe to the helper's standard
// input, wait at most 0.5 s for the helper's one byte ("sent or gave up") and 0.5 s more,
// then die by the same signal. docs/crash-reporter.md lists every call on that path.
class CrashReporter {
public:
    // The handled signals, in the order they are installed and uninstalled.
    static constexpr std::array<int, 6> handledSignals = {SIGABRT, SIGBUS,  SIGFPE,
                                                          SIGILL,  SIGSEGV, SIGTRAP};
    static constexpr int uploadWaitMs = 500;
    static constexpr int sleepAfterMs = 500;
    // A second thread that faults while the first reports waits longer than the first's
    // two sequences, then dies by its own signal.
    static constexpr int otherThreadWaitMs = 3000;
    static constexpr int maxFrames = 128;

    // Main thread, once the event loop runs. `helperPath` is started with the single
    // argument --crash-report; the console passes "/proc/self/exe" as it is, so an
    // executable replaced or deleted since start still reports. Idempotent.
    static void install(const QString &helperPath);
    // Back to the default disposition of the six signals and the terminate handler that
    // was there before install(); nothing when not installed.
    static void uninstall();
    static bool isInstalled();
    // The terminate handler install() found, which ours chains to.
    static std::terminate_handler previousTerminateHandler();

    // "SIGSEGV (Segmentation Violation)" and the like by this system's signal number;
    // "Signal N" for any other. Async-signal-safe.
    static void appendSignalName(CrashTextBuffer &text, int signalNumber);
    static QString signalName(int signalNumber);
};
