// telvanectl: the shell's way to ask the console for the automation actions. It only
// reads the stored computer list and writes the shared queue; the running console (or
// the next one to start) carries the requests out.

#include "ComputerEntityQuery.h"
#include "ConnectToComputerIntent.h"
#include "DisconnectFromComputerIntent.h"
#include "GetComputerStatusIntent.h"
#include "SharedAppState.h"
#include "StartRemoteControlIntent.h"
#include "StopRemoteControlIntent.h"
#include "UploadFileIntent.h"
#include "platform/AppIdentity.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>
#include <cstdio>

namespace {

enum ExitCode { success = 0, actionFailed = 1, usageError = 2 };

struct Action {
    const char *name;
    IntentDescription (*description)();
    IntentResult (*perform)(SharedAppState &, const IntentParameters &);
};

const Action actions[] = {
    {"connect", &ConnectToComputerIntent::description, &ConnectToComputerIntent::perform},
    {"disconnect", &DisconnectFromComputerIntent::description,
     &DisconnectFromComputerIntent::perform},
    {"remote-control", &StartRemoteControlIntent::description, &StartRemoteControlIntent::perform},
    {"stop-remote-control", &StopRemoteControlIntent::description,
     &StopRemoteControlIntent::perform},
    {"status", &GetComputerStatusIntent::description, &GetComputerStatusIntent::perform},
    {"upload", &UploadFileIntent::description, &UploadFileIntent::perform},
};

const char computersAction[] = "computers";

void write(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

QString overview()
{
    QString text = QStringLiteral(
        "Usage: telvanectl <action> [options]\n"
        "\n"
        "Queues requests for the Telvane console, which carries them out while it runs\n"
        "or at its next start. telvanectl itself never contacts a computer.\n"
        "\n"
        "Actions:\n");
    for (const Action &action : actions) {
        text += QStringLiteral("  %1%2\n")
                    .arg(QLatin1String(action.name), -22)
                    .arg(action.description().title);
    }
    text += QStringLiteral("  %1%2\n")
                .arg(QLatin1String(computersAction), -22)
                .arg(QStringLiteral("List the stored computers (id and name)"));
    text += QStringLiteral("\nRun 'telvanectl <action> --help' for an action's options.\n");
    return text;
}

QString actionHelp(const Action &action)
{
    const IntentDescription description = action.description();
    const bool hasFile = !description.fileDescription.isEmpty();
    QString text =
        QStringLiteral("Usage: telvanectl %1 %2[--computer ID | --computer-name NAME]\n\n%3\n\n")
            .arg(QLatin1String(action.name), hasFile ? QStringLiteral("--file PATH ") : QString(),
                 description.title);
    text += QStringLiteral("Options:\n");
    if (hasFile)
        text += QStringLiteral("  --file PATH           %1\n").arg(description.fileDescription);
    text += QStringLiteral("  --computer ID         %1,\n"
                           "                        by its id as 'telvanectl computers' lists it\n")
                .arg(description.computerDescription);
    text += QStringLiteral("  --computer-name NAME  %1:\n"
                           "                        any part of its name, ignoring case;\n"
                           "                        the first match in the list wins\n")
                .arg(description.computerNameDescription);
    text += QStringLiteral("  -h, --help            Show this help\n\n");
    if (QLatin1String(action.name) == QLatin1String("status"))
        text += QStringLiteral("Without a computer, one line per stored computer is printed.\n");
    text +=
        QStringLiteral("When both --computer and --computer-name are given, --computer wins.\n");
    return text;
}

int usage(const QString &message, const QString &hint)
{
    write(stderr, QStringLiteral("telvanectl: ") + message + QLatin1Char('\n') + hint);
    return usageError;
}

int runComputers(const QStringList &arguments)
{
    if (arguments.size() == 1 && (arguments.first() == QLatin1String("--help") ||
                                  arguments.first() == QLatin1String("-h"))) {
        write(stdout, QStringLiteral("Usage: telvanectl computers\n\nLists the stored computers, "
                                     "one per line: the id, a tab and the name.\n"));
        return success;
    }
    if (!arguments.isEmpty())
        return usage(QStringLiteral("'computers' takes no arguments"),
                     QStringLiteral("Run 'telvanectl computers --help'.\n"));
    SharedAppState state;
    QString text;
    for (const ComputerEntity &entity : ComputerEntityQuery(state).suggestedEntities())
        text += entity.id + QLatin1Char('\t') + entity.displayString + QLatin1Char('\n');
    write(stdout, text);
    return success;
}

int runAction(const Action &action, const QStringList &arguments)
{
    const IntentDescription description = action.description();
    const bool hasFile = !description.fileDescription.isEmpty();
    const QString hint =
        QStringLiteral("Run 'telvanectl %1 --help'.\n").arg(QLatin1String(action.name));

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
        write(stdout, actionHelp(action));
        return success;
    }
    if (!parser.positionalArguments().isEmpty())
        return usage(QStringLiteral("unexpected argument '%1'")
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
    const IntentResult result = action.perform(state, parameters);
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

    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return usage(QStringLiteral("no action given"), overview());
    const QString name = arguments.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help")) {
        write(stdout, overview());
        return success;
    }
    if (name == QLatin1String(computersAction))
        return runComputers(arguments);
    for (const Action &action : actions) {
        if (name == QLatin1String(action.name))
            return runAction(action, arguments);
    }
    return usage(QStringLiteral("unknown action '%1'").arg(name), overview());
}
