#include "ConsoleOptions.h"

#include "model/ComputerJson.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>
#include <algorithm>
#include <cstdio>

namespace {

// Read before the application object exists, so no installed translator can be asked.
QString localised(const char *source)
{
    QTranslator *translator = ConsoleOptions::translator();
    const QString translated =
        translator ? translator->translate("ConsoleOptions", source) : QString();
    return translated.isEmpty() ? QString::fromUtf8(source) : translated;
}

// Qt's own options, which the application object takes out of argv itself. Each is also
// accepted with two dashes.
const QStringList qtOptionsWithValue = {
    "platform",        "platformpluginpath",
    "platformtheme",   "plugin",
    "qwindowgeometry", "geometry",
    "qwindowicon",     "icon",
    "qwindowtitle",    "title",
    "display",         "name",
    "session",         "style",
    "stylesheet",      "visual",
};
const QStringList qtFlags = {"reverse", "widgetcount", "nograb", "dograb", "sync", "testability"};
const QStringList qtOptionsWithEquals = {
    "style=", "stylesheet=", "qmljsdebugger=", "dialogs=", "fontengine="};

// The option's name without its dashes; empty when `argument` is no option.
QString optionName(const QString &argument)
{
    if (argument.startsWith(QLatin1String("--")))
        return argument.mid(2);
    if (argument.startsWith(QLatin1Char('-')))
        return argument.mid(1);
    return {};
}

struct Split {
    QStringList ours;
    bool platformChosen = false;
    QString missingValue; // a Qt option given last, without its value
};

Split withoutQtOptions(const QStringList &arguments)
{
    Split split;
    split.ours = arguments.mid(0, 1);
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--")) {
            split.ours << arguments.mid(i);
            break;
        }
        const QString name = optionName(argument);
        if (qtOptionsWithValue.contains(name)) {
            if (i + 1 == arguments.size())
                split.missingValue = argument;
            else if (name == QLatin1String("platform") && !arguments.at(i + 1).isEmpty())
                split.platformChosen = true;
            ++i;
            continue;
        }
        const bool isQtOption =
            qtFlags.contains(name) ||
            std::any_of(qtOptionsWithEquals.begin(), qtOptionsWithEquals.end(),
                        [&](const QString &prefix) { return name.startsWith(prefix); });
        if (!isQtOption)
            split.ours << argument;
    }
    return split;
}

bool hasDisplay(const QProcessEnvironment &environment, bool platformChosen)
{
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!environment.value(QLatin1String(name)).isEmpty())
            return true;
    }
    return platformChosen;
}

// Like QCommandLineParser's own help, which needs an application object.
QString helpText(const QString &program, const QList<QCommandLineOption> &options)
{
    QList<QPair<QString, QString>> rows;
    qsizetype width = 0;
    for (const QCommandLineOption &option : options) {
        QStringList names;
        for (const QString &name : option.names())
            names << (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
        QString left = names.join(QStringLiteral(", "));
        if (!option.valueName().isEmpty())
            left += QStringLiteral(" <%1>").arg(option.valueName());
        width = qMax(width, left.size());
        rows.append({left, option.description()});
    }
    QString text =
        localised(QT_TRANSLATE_NOOP("ConsoleOptions", "Usage: %1 [options]")).arg(program) +
        QLatin1Char('\n') +
        localised(QT_TRANSLATE_NOOP("ConsoleOptions",
                                    "Telvane console: supervise the computers of your fleet.")) +
        QStringLiteral("\n\n") + localised(QT_TRANSLATE_NOOP("ConsoleOptions", "Options:")) +
        QLatin1Char('\n');
    for (const auto &[left, description] : rows)
        text += QStringLiteral("  %1  %2\n").arg(left.leftJustified(width), description);
    text += QStringLiteral("\n") +
            localised(QT_TRANSLATE_NOOP(
                "ConsoleOptions",
                "Qt's own options (-platform, -display, -style and the like) are passed "
                "on to Qt.")) +
            QStringLiteral("\n");
    return text;
}

} // namespace

QStringList ConsoleOptions::arguments(int argc, const char *const *argv)
{
    QStringList list;
    for (int i = 0; i < argc; ++i)
        list << QString::fromLocal8Bit(argv[i]);
    return list;
}

QString ConsoleOptions::version()
{
    return QStringLiteral(TELVANE_VERSION);
}

ConsoleOptions ConsoleOptions::parse(const QStringList &arguments,
                                     const QProcessEnvironment &environment)
{
    ConsoleOptions result;
    const QString program =
        arguments.isEmpty() ? QStringLiteral("telvane") : QFileInfo(arguments.first()).fileName();
    const auto fail = [&](int code, const QString &message) {
        result.action = Action::exit;
        result.exitCode = code;
        result.error = program + QStringLiteral(": ") + message + QLatin1Char('\n');
        return result;
    };

    const QCommandLineOption helpOption(
        {QStringLiteral("h"), QStringLiteral("help")},
        localised(QT_TRANSLATE_NOOP("ConsoleOptions", "Show this help and exit.")));
    const QCommandLineOption versionOption(
        {QStringLiteral("v"), QStringLiteral("version")},
        localised(QT_TRANSLATE_NOOP("ConsoleOptions", "Show the version and exit.")));
    const QCommandLineOption seedOption(
        QStringLiteral("add-computer-if-empty"),
        localised(QT_TRANSLATE_NOOP("ConsoleOptions",
                                    "Add this computer (a JSON record) when the list is empty.")),
        QStringLiteral("json"));
    // Hidden: the console starts itself with it when it crashes (CrashReportHelper).
    const QCommandLineOption crashReportOption(QStringLiteral("crash-report"));
    QCommandLineParser parser;
    parser.addOptions({helpOption, versionOption, seedOption, crashReportOption});

    const Split split = withoutQtOptions(arguments);
    if (!split.missingValue.isEmpty())
        return fail(usageError,
                    localised(QT_TRANSLATE_NOOP("ConsoleOptions", "Missing value after '%1'."))
                        .arg(split.missingValue));
    if (!parser.parse(split.ours))
        return fail(
            usageError,
            parser.errorText() + QLatin1Char('\n') +
                localised(QT_TRANSLATE_NOOP("ConsoleOptions", "Try '%1 --help'.")).arg(program));
    if (parser.isSet(crashReportOption)) {
        // The report comes on standard input, so positional arguments make no sense.
        if (!parser.positionalArguments().isEmpty() || parser.isSet(seedOption))
            return fail(usageError,
                        localised(QT_TRANSLATE_NOOP("ConsoleOptions",
                                                    "--crash-report takes no other argument.")));
        result.action = Action::crashReport;
        return result;
    }
    if (parser.isSet(helpOption)) {
        result.action = Action::exit;
        result.output = helpText(program, {helpOption, versionOption, seedOption});
        return result;
    }
    if (parser.isSet(versionOption)) {
        result.action = Action::exit;
        result.output = QStringLiteral("Telvane %1\n").arg(version());
        return result;
    }
    if (!parser.positionalArguments().isEmpty())
        return fail(usageError,
                    localised(QT_TRANSLATE_NOOP("ConsoleOptions", "Unexpected argument: %1"))
                        .arg(parser.positionalArguments().first()));
    if (parser.isSet(seedOption)) {
        QString error;
        result.computerIfEmpty = ComputerJson::decode(parser.value(seedOption).toUtf8(), &error);
        if (!result.computerIfEmpty)
            return fail(usageError, QStringLiteral("--add-computer-if-empty: ") + error);
    }
    if (!hasDisplay(environment, split.platformChosen))
        return fail(noDisplay,
                    localised(QT_TRANSLATE_NOOP(
                        "ConsoleOptions", "no display to show the console on (DISPLAY and "
                                          "WAYLAND_DISPLAY are unset); start it from a desktop "
                                          "session or under xvfb-run -a")));
    return result;
}

int ConsoleOptions::finish() const
{
    std::fputs(output.toLocal8Bit().constData(), stdout);
    std::fputs(error.toLocal8Bit().constData(), stderr);
    std::fflush(stdout);
    return exitCode;
}

QTranslator *ConsoleOptions::translator()
{
    static QTranslator translator;
    static const bool loaded = translator.load(QLocale(), QStringLiteral("telvane"),
                                               QStringLiteral("_"), QStringLiteral(":/i18n"));
    return loaded ? &translator : nullptr;
}
