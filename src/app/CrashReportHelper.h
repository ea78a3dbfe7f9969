#pragma once

// `telvane --crash-report`: the process a crashing console starts. It reads the report on
// standard input, uploads it, writes one byte to standard output ("sent or gave up") for
// the dying console, writes the alert's texts to standard error and, with a display, shows
// the alert for at most 10 s. It never installs the crash reporter and never writes the
// report to disk.
class CrashReportHelper {
public:
    static constexpr int uploadWaitMs = 500;
    static constexpr int alertTimeoutMs = 10000;
    // Exit statuses.
    static constexpr int reported = 0;
    static constexpr int badReport = 2;

    // Called from main() before any application object exists.
    static int run(int argc, char *argv[]);
};
