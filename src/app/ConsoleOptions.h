#pragma once

#include "model/RemoteComputer.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <optional>

// The console's command line, read before any application object exists: --help,
// --version and a bad option need no display, and a console with nothing to show on ends
// with one clear line instead of Qt's abort. Qt's own options (-platform, -display,
// -style, -session and the like) are skipped here and left to the application object.
class QTranslator;

class ConsoleOptions {
public:
    // crashReport: the hidden --crash-report, run by a crashing console to report for it.
    enum class Action { run, exit, crashReport };

    // Exit statuses: 0 after --help and --version, 2 for a bad command line, 1 without a
    // display.
    static constexpr int usageError = 2;
    static constexpr int noDisplay = 1;

    // `arguments` start with the program name; the environment says whether a display or
    // a platform was chosen.
    static ConsoleOptions parse(const QStringList &arguments,
                                const QProcessEnvironment &environment);
    static QStringList arguments(int argc, const char *const *argv);
    static QString version();
    // The console's built-in translation for the user's language, loaded once (also for the
    // texts read here, before any application object); null when there is none.
    static QTranslator *translator();

    Action action = Action::run;
    int exitCode = 0;
    QString output; // for standard output
    QString error;  // for standard error, one message per line
    // --add-computer-if-empty: added when the stored list is empty.
    std::optional<RemoteComputer> computerIfEmpty;

    // Writes `output` and `error` and returns `exitCode`.
    int finish() const;
};
