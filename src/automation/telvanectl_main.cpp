// telvanectl: the shell's way to ask the console for the automation actions. It only
// reads the stored computer list and writes the shared queue; the running console (or
// the next one to start) carries the requests out.

#include "ComputerEntityQuery.h"
#include "IntentTable.h"
#include "SharedAppState.h"
#include "WardlineShortcuts.h"
#include "platform/AppIdentity.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QTextStream>
#include <QTranslator>
#include <cstdio>

namespace {

enum ExitCode { success = 0, actionFailed = 1, usageError = 2 };

const char computersAction[] = "computers";
const char phrasesAction[] = "phrases";

// telvanectl's own texts; the actions' texts come from IntentTable.
struct Telvanectl {
    Q_DECLARE_TR_FUNCTIONS(telvanectl)
};

void write(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

QString helpRow()
{
    return QStringLiteral("  %1").arg(QStringLiteral("-h, --help"), -22) +
           Telvanectl::tr("Show this help") + QLatin1Char('\n');
}

// The options of an action without parameters.
QString helpOptionRow()
{
    return QLatin1Char('\n') + Telvanectl::tr("Options:") + QLatin1Char('\n') + helpRow();
}

QString overview()
{
    QString text =
        Telvanectl::tr("Usage: telvanectl <action> [options]\n"
                       "       telvanectl '<phrase>' [options]\n"
                       "\n"
                       "Queues requests for the Telvane console, which carries them out while it "
                       "runs\n"
                       "or at its next start. telvanectl itself never contacts a computer.\n"
                       "\n"
                       "Actions:\n");
    const auto row = [](const QString &name, const QString &what) {
        return QStringLiteral("  %1%2\n").arg(name, -22).arg(what);
    };
    for (const IntentTable::Entry &entry : IntentTable::entries())
        text += row(QLatin1String(entry.command), IntentTable::text(entry.title));
    text += row(QLatin1String(computersAction),
                Telvanectl::tr("List the stored computers (id and name)"));
    text +=
        row(QLatin1String(phrasesAction), Telvanectl::tr("List the phrases that name the actions"));
    text += QLatin1Char('\n') +
            Telvanectl::tr("Run 'telvanectl <action> --help' for an action's options.") +
            QLatin1Char('\n');
    return text;
}

// One option of an action's help: the option, then its title, description and a note,
// each on its own line under the first.
QString optionHelp(const QString &option, const IntentTable::Parameter &parameter,
                   const QString &note)
{
    const QString indent(24, QLatin1Char(' '));
    QString text = QStringLiteral("  %1").arg(option, -22) + IntentTable::text(parameter.title) +
                   QLatin1Char('\n');
    text += indent + IntentTable::text(parameter.description) + QLatin1Char('\n');
    if (!note.isEmpty())
        text += indent + note + QLatin1Char('\n');
    return text;
}

QString actionHelp(const IntentTable::Entry &entry)
{
    const bool hasFile = entry.file.isPresent();
    QString text = QStringLiteral("%1 telvanectl %2 %3[--computer ID | --computer-name NAME]\n\n")
                       .arg(Telvanectl::tr("Usage:"), QLatin1String(entry.command),
                            hasFile ? QStringLiteral("--file PATH ") : QString());
    text += IntentTable::text(entry.title) + QLatin1Char('\n');
    text += IntentTable::summary(entry, QStringLiteral("PATH"), Telvanectl::tr("COMPUTER")) +
            QStringLiteral("\n\n");
    text += Telvanectl::tr("Options:") + QLatin1Char('\n');
    if (hasFile)
        text += optionHelp(QStringLiteral("--file PATH"), entry.file, QString());
    text += optionHelp(QStringLiteral("--computer ID"), entry.computer,
                       Telvanectl::tr("(its id, as 'telvanectl computers' lists it)"));
    text +=
        optionHelp(QStringLiteral("--computer-name NAME"), entry.computerName,
                   Telvanectl::tr("(any part of its name, ignoring case; the first match wins)"));
    text += helpRow() + QLatin1Char('\n');
    if (QLatin1String(entry.command) == QLatin1String("status"))
        text += Telvanectl::tr("Without a computer, one line per stored computer is printed.") +
                QLatin1Char('\n');
    text += Telvanectl::tr("When both --computer and --computer-name are given, --computer wins.") +
            QStringLiteral("\n\n");
    text += Telvanectl::tr("Phrases (%1):").arg(IntentTable::text(entry.shortTitle)) +
            QLatin1Char('\n');
    for (const QString &phrase : IntentTable::phrases(entry))
        text += QStringLiteral("  ") + phrase + QLatin1Char('\n');
    return text;
}

int usage(const QString &message, const QString &hint)
{
    write(stderr, QStringLiteral("telvanectl: ") + message + QLatin1Char('\n') + hint);
    return usageError;
}

bool isHelp(const QStringList &arguments)
{
    return arguments.size() == 1 && (arguments.first() == QLatin1String("--help") ||
                                     arguments.first() == QLatin1String("-h"));
}

int runComputers(const QStringList &arguments)
{
    if (isHelp(arguments)) {
        write(stdout,
              Telvanectl::tr("Usage: telvanectl computers\n\nLists the stored computers, one per "
                             "line: the id, a tab and the name.\n") +
                  helpOptionRow());
        return success;
    }
    if (!arguments.isEmpty())
        return usage(Telvanectl::tr("'computers' takes no arguments"),
                     Telvanectl::tr("Run 'telvanectl computers --help'.") + QLatin1Char('\n'));
    SharedAppState state;
    QString text;
    for (const ComputerEntity &entity : ComputerEntityQuery(state).suggestedEntities())
        text += entity.id + QLatin1Char('\t') + entity.displayString + QLatin1Char('\n');
    write(stdout, text);
    return success;
}

int runPhrases(const QStringList &arguments)
{
    if (isHelp(arguments)) {
        write(stdout,
              Telvanectl::tr("Usage: telvanectl phrases\n\nLists the phrases that name an action, "
                             "one per line: the phrase, a tab and the action's short title.\n") +
                  helpOptionRow());
        return success;
    }
    if (!arguments.isEmpty())
        return usage(Telvanectl::tr("'phrases' takes no arguments"),
                     Telvanectl::tr("Run 'telvanectl phrases --help'.") + QLatin1Char('\n'));
    write(stdout, WardlineShortcuts::listing());
    return success;
}

int runAction(const IntentTable::Entry &entry, const QStringList &arguments)
{
    const bool hasFile = entry.file.isPresent();
    const QString hint =
        Telvanectl::tr("Run 'telvanectl %1 --help'.").arg(QLatin1String(entry.command)) +
        QLatin1Char('\n');

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QString());
    const QCommandLineOption computer(QStringLiteral("computer"), QString(), QStringLiteral("ID"));
    const QCommandLineOption computerName(QStringLiteral("computer-name"), QString(),
                                          QStringLiteral("NAME"));
    const QCommandLineOption file(QStringLiteral("file"), QString(), QStringLiteral("PATH"));
    parser.addOption(help);
    parser.addOption(computer);
    parser.addOption(computerName);
    if (hasFile)
        parser.addOption(file);
    if (!parser.parse(QStringList{QStringLiteral("telvanectl")} + arguments))
        return usage(parser.errorText(), hint);
    if (parser.isSet(help)) {
        write(stdout, actionHelp(entry));
        return success;
    }
    if (!parser.positionalArguments().isEmpty())
        return usage(Telvanectl::tr("unexpected argument '%1'")
                         .arg(parser.positionalArguments().constFirst()),
                     hint);

    IntentParameters parameters;
    if (parser.isSet(computer))
        parameters.computer = ComputerEntity{parser.value(computer), QString()};
    // An empty name would match every computer; it counts as no name.
    if (parser.isSet(computerName) && !parser.value(computerName).isEmpty())
        parameters.computerName = parser.value(computerName);
    if (hasFile && parser.isSet(file)) {
        const QString path = parser.value(file);
        IntentParameters::File handed;
        if (!path.isEmpty())
            handed.location = QFileInfo(path).absoluteFilePath();
        handed.name = QFileInfo(path).fileName();
        parameters.file = handed;
    }

    SharedAppState state;
    const IntentResult result = entry.perform(state, parameters);
    if (!result.isSuccess()) {
        write(stderr, result.error->description + QLatin1Char('\n'));
        return actionFailed;
    }
    if (!result.text.isEmpty())
        write(stdout, result.text + QLatin1Char('\n'));
    return success;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // The same names as the console, so both open the same stores and shared folder.
    QCoreApplication::setOrganizationName(QLatin1String(AppIdentity::organizationName));
    QCoreApplication::setApplicationName(QLatin1String(AppIdentity::applicationName));
    // The user's language when a translation for it is built in; English otherwise.
    QTranslator translator;
    if (translator.load(QLocale(), QStringLiteral("telvanectl"), QStringLiteral("_"),
                        QStringLiteral(":/i18n")))
        QCoreApplication::installTranslator(&translator);

    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return usage(Telvanectl::tr("no action given"), overview());
    const QString name = arguments.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help")) {
        write(stdout, overview());
        return success;
    }
    if (name == QLatin1String(computersAction))
        return runComputers(arguments);
    if (name == QLatin1String(phrasesAction))
        return runPhrases(arguments);
    if (const IntentTable::Entry *entry = IntentTable::find(name))
        return runAction(*entry, arguments);
    if (const IntentTable::Entry *entry = WardlineShortcuts::match(name))
        return runAction(*entry, arguments);
    // Words with spaces were meant as a phrase: list the phrases rather than the actions.
    if (name.simplified().contains(QLatin1Char(' ')))
        return usage(Telvanectl::tr("no action has the phrase '%1'; the phrases are:").arg(name),
                     WardlineShortcuts::listing());
    return usage(Telvanectl::tr("unknown action '%1'").arg(name), overview());
}
