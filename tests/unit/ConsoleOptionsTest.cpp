// The console's command line as a table: what it does with each, before any application
// object exists.

#include "app/ConsoleOptions.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char *name;
    QStringList arguments;
    QStringList environment; // NAME=value
    ConsoleOptions::Action action;
    int exitCode;
    const char *errorContains;
};

QProcessEnvironment environmentOf(const QStringList &entries)
{
    QProcessEnvironment environment;
    for (const QString &entry : entries)
        environment.insert(entry.section(QLatin1Char('='), 0, 0),
                           entry.section(QLatin1Char('='), 1));
    return environment;
}

using Action = ConsoleOptions::Action;

const Case cases[] = {
    {"help without a display", {"--help"}, {}, Action::exit, 0, ""},
    {"bad option before the display", {"--bogus"}, {}, Action::exit, 2, "'bogus'"},
    {"positional argument", {"extra"}, {"DISPLAY=:0"}, Action::exit, 2, "extra"},
    {"after --", {"--", "--help"}, {"DISPLAY=:0"}, Action::exit, 2, "--help"},
    {"Qt option without its value", {"-style"}, {"DISPLAY=:0"}, Action::exit, 2, "'-style'"},
    {"X display", {}, {"DISPLAY=:0"}, Action::run, 0, ""},
    {"Wayland display", {}, {"WAYLAND_DISPLAY=wayland-0"}, Action::run, 0, ""},
    {"platform from the environment", {}, {"QT_QPA_PLATFORM=offscreen"}, Action::run, 0, ""},
    {"platform on the command line", {"-platform", "offscreen"}, {}, Action::run, 0, ""},
    {"platform with two dashes", {"--platform", "offscreen"}, {}, Action::run, 0, ""},
    {"empty display variables", {}, {"DISPLAY=", "WAYLAND_DISPLAY="}, Action::exit, 1, "display"},
    {"Qt's options pass",
     {"-style=fusion", "--reverse", "-display", ":1", "-qwindowtitle", "T"},
     {"DISPLAY=:0"},
     Action::run,
     0,
     ""},
    {"good record",
     {"--add-computer-if-empty", R"({"host":"studio.local","port":5906})"},
     {"DISPLAY=:0"},
     Action::run,
     0,
     ""},
    {"record without host",
     {"--add-computer-if-empty", R"({"port":5906})"},
     {"DISPLAY=:0"},
     Action::exit,
     2,
     "host"},
    {"record with a port too large",
     {"--add-computer-if-empty", R"({"host":"a","port":70000})"},
     {"DISPLAY=:0"},
     Action::exit,
     2,
     "--add-computer-if-empty"},
    {"record without a value",
     {"--add-computer-if-empty"},
     {"DISPLAY=:0"},
     Action::exit,
     2,
     "add-computer-if-empty"},
    {"crash-report helper without a display", {"--crash-report"}, {}, Action::crashReport, 0, ""},
    {"crash-report helper with an argument",
     {"--crash-report", "extra"},
     {},
     Action::exit,
     2,
     "crash-report"},
};

} // namespace

TEST(ConsoleOptions, EachCommandLine)
{
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const ConsoleOptions options = ConsoleOptions::parse(
            QStringList{"/usr/bin/telvane"} + c.arguments, environmentOf(c.environment));
        EXPECT_EQ(options.action, c.action);
        EXPECT_EQ(options.exitCode, c.exitCode);
        EXPECT_TRUE(options.error.contains(QLatin1String(c.errorContains)))
            << options.error.toStdString();
        if (c.exitCode != 0) {
            EXPECT_TRUE(options.error.startsWith("telvane: ")) << options.error.toStdString();
        }
    }
}

TEST(ConsoleOptions, RecordToAddWhenEmpty)
{
    const ConsoleOptions options = ConsoleOptions::parse(
        {"telvane", "--add-computer-if-empty", R"({"name":"Studio","host":"studio.local"})"},
        environmentOf({"DISPLAY=:0"}));
    ASSERT_TRUE(options.computerIfEmpty);
    EXPECT_EQ(options.computerIfEmpty->displayName(), "Studio");
    EXPECT_EQ(options.computerIfEmpty->port, 5905);
}
