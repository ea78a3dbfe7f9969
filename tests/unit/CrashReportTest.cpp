// The crash report's texts and the reporter's installation, without crashing anything
// (tests/integration/crash crashes child processes).

#include "services/CrashReport.h"
#include "services/CrashReporter.h"
#include "services/CrashTextBuffer.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

QByteArray wellFormed(const QByteArray &app = "Telvane", const QByteArray &version = "1.2.3")
{
    return "Crash Report\n============\nApp: " + app + "\nVersion: " + version +
           "\nmacOS Version: Debian GNU/Linux 12 (bookworm), Linux 6.1.0\nTimestamp: "
           "2024-05-01T12:34:56Z\n\nSignal Type: SIGSEGV (Segmentation Violation)\n\nCall "
           "Stack:\n./telvane(main+0x1) [0x1]\n/lib/libc.so.6(+0x2) [0x2]\n";
}

TEST(CrashReport, SignalNamesByThisSystemsNumbers)
{
    const struct {
        int number;
        const char *name;
    } cases[] = {
        {SIGILL, "SIGILL (Illegal Instruction)"},
        {SIGTRAP, "SIGTRAP (Trace Trap)"},
        {SIGABRT, "SIGABRT (Abort)"},
        {SIGFPE, "SIGFPE (Floating Point Exception)"},
        {7, "SIGBUS (Bus Error)"}, // SIGBUS is 7 on Linux
        {SIGSEGV, "SIGSEGV (Segmentation Violation)"},
        {10, "Signal 10"},
        {0, "Signal 0"},
        {-3, "Signal -3"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(CrashReporter::signalName(c.number).toStdString(), c.name) << c.number;
}

TEST(CrashReport, TimestampsWithoutTheCLibrary)
{
    const struct {
        long long seconds;
        const char *text;
    } cases[] = {
        {0, "1970-01-01T00:00:00Z"},         {1714566896, "2024-05-01T12:34:56Z"},
        {951782400, "2000-02-29T00:00:00Z"}, {4102444799, "2099-12-31T23:59:59Z"},
        {-1, "1969-12-31T23:59:59Z"},        {1709251199, "2024-02-29T23:59:59Z"},
    };
    for (const auto &c : cases) {
        char storage[32];
        CrashTextBuffer text(storage, sizeof storage);
        text.appendUtcTimestamp(c.seconds);
        EXPECT_EQ(std::string(text.data(), text.size()), c.text) << c.seconds;
    }
}

TEST(CrashReport, BufferCutsOffInsteadOfOverrunning)
{
    char storage[9] = "########";
    CrashTextBuffer text(storage, 6);
    text.append("Crash").appendDecimal(123456).append("Report");
    EXPECT_EQ(std::string(text.data(), text.size()), "Crash1");
    EXPECT_EQ(storage[6], '#');
}

TEST(CrashReport, HelperInputIsValidated)
{
    const struct {
        const char *label;
        QByteArray input;
    } bad[] = {
        {"empty", ""},
        {"not a report", "hello\n"},
        {"header cut short", "Crash Report\n============\nApp: Telvane\nVersion: 1\n"},
        {"no details", wellFormed().left(wellFormed().indexOf("Z\n\n") + 3)},
        {"lines out of order",
         "Crash Report\n============\nVersion: 1\nApp: T\nmacOS Version: x\nTimestamp: t\n\nd"},
        {"not UTF-8", wellFormed() + "\xff\xfe"},
        {"a NUL byte", wellFormed() + QByteArray(1, '\0')},
        {"too large", wellFormed() + QByteArray(CrashReport::maxInputSize, 'x')},
    };
    for (const auto &c : bad) {
        QString error;
        EXPECT_FALSE(CrashReport::fromHelperInput(c.input, &error)) << c.label;
        EXPECT_FALSE(error.isEmpty()) << c.label;
    }

    const std::optional<CrashReport> report = CrashReport::fromHelperInput(wellFormed());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->text(), wellFormed().chopped(1)); // frames joined, no final line feed
    EXPECT_EQ(report->userAgent(), "Telvane-1.2.3");
    const std::optional<CrashReport> unnamed = CrashReport::fromHelperInput(wellFormed("", ""));
    ASSERT_TRUE(unnamed);
    EXPECT_EQ(unnamed->userAgent(), "Unknown-Unknown");
}

void previousHandler() {}
void otherHandler(int) {}

TEST(CrashReporter, InstallsOnceAndUninstallsToTheDefaults)
{
    // Without install(), uninstall() leaves a foreign handler alone.
    struct sigaction foreign {};
    foreign.sa_handler = otherHandler;
    sigemptyset(&foreign.sa_mask);
    struct sigaction saved {};
    sigaction(SIGSEGV, &foreign, &saved);
    CrashReporter::uninstall();
    struct sigaction now {};
    sigaction(SIGSEGV, nullptr, &now);
    EXPECT_EQ(now.sa_handler, otherHandler);
    sigaction(SIGSEGV, &saved, nullptr);

    const std::terminate_handler original = std::set_terminate(previousHandler);
    CrashReporter::install(QStringLiteral("/nonexistent/helper"));
    const std::terminate_handler ours = std::get_terminate();
    CrashReporter::install(QStringLiteral("/nonexistent/helper"));
    EXPECT_TRUE(CrashReporter::isInstalled());
    EXPECT_NE(ours, previousHandler);
    EXPECT_EQ(std::get_terminate(), ours);
    EXPECT_EQ(CrashReporter::previousTerminateHandler(), previousHandler);
    for (const int signalNumber : CrashReporter::handledSignals) {
        sigaction(signalNumber, nullptr, &now);
        EXPECT_TRUE(now.sa_flags & SA_ONSTACK) << signalNumber;
        for (const int blocked : CrashReporter::handledSignals)
            EXPECT_TRUE(sigismember(&now.sa_mask, blocked)) << signalNumber << " " << blocked;
    }

    CrashReporter::uninstall();
    EXPECT_FALSE(CrashReporter::isInstalled());
    EXPECT_EQ(std::get_terminate(), previousHandler);
    for (const int signalNumber : CrashReporter::handledSignals) {
        sigaction(signalNumber, nullptr, &now);
        EXPECT_EQ(now.sa_handler, SIG_DFL) << signalNumber;
    }
    std::set_terminate(original);
}

} // namespace
