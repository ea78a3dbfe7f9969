#include "IntentTable.h"

#include "ConnectToComputerIntent.h"
#include "DisconnectFromComputerIntent.h"
#include "GetComputerStatusIntent.h"
#include "StartRemoteControlIntent.h"
#include "StopRemoteControlIntent.h"
#include "UploadFileIntent.h"
#include "platform/AppIdentity.h"

#include <QCoreApplication>
#include <QLatin1StringView>
#include <iterator>

namespace {

#define T(text) QT_TRANSLATE_NOOP("IntentTable", text)

constexpr IntentTable::Parameter none{nullptr, nullptr};
constexpr const char *computerTitle = T("Computer");
constexpr const char *computerNameTitle = T("Computer Name");

const IntentTable::Entry table[] = {
    {"connect",
     T("Connect to Remote Computer"),
     none,
     {computerTitle, T("The remote computer to connect to")},
     {computerNameTitle, T("Name of the computer to connect to")},
     T("Connect to "),
     nullptr,
     {T("Connect to "), T("Connect to remote computer in "), T("Connect to server in ")},
     T("Connect to Computer"),
     "desktopcomputer",
     &ConnectToComputerIntent::perform},
    {"disconnect",
     T("Disconnect from Remote Computer"),
     none,
     {computerTitle, T("The remote computer to disconnect from")},
     {computerNameTitle, T("Name of the computer to disconnect from")},
     T("Disconnect from "),
     nullptr,
     {T("Disconnect from "), T("Disconnect from remote computer in "), nullptr},
     T("Disconnect from Computer"),
     "desktopcomputer.and.arrow.down",
     &DisconnectFromComputerIntent::perform},
    {"remote-control",
     T("Start Remote Control"),
     none,
     {computerTitle, T("The computer to start remote controlling")},
     {computerNameTitle, T("Name of the computer to control")},
     T("Start remote control of "),
     nullptr,
     {T("Start remote control in "), T("Control remote computer in "),
      T("Take control of computer in ")},
     T("Start Remote Control"),
     "cursorarrow.click",
     &StartRemoteControlIntent::perform},
    {"stop-remote-control",
     T("Stop Remote Control"),
     none,
     {computerTitle, T("The computer to stop remote controlling")},
     {computerNameTitle, T("Name of the computer to stop controlling")},
     T("Stop remote control of "),
     nullptr,
     {T("Stop remote control in "), T("Stop controlling computer in "), nullptr},
     T("Stop Remote Control"),
     "cursorarrow.click.badge.clock",
     &StopRemoteControlIntent::perform},
    {"status",
     T("Get Computer Status"),
     none,
     {computerTitle, T("The computer to check status for")},
     {computerNameTitle, T("Name of the computer to check")},
     T("Get status of "),
     nullptr,
     {T("Check status in "), T("Get computer status in "), T("Check remote computer status in ")},
     T("Check Computer Status"),
     "info.circle",
     &GetComputerStatusIntent::perform},
    {"upload",
     T("Upload File"),
     {T("File"), T("The file to upload")},
     {computerTitle, T("The computer to upload the file to")},
     {computerNameTitle, T("Name of the computer to upload to")},
     T("Upload "),
     T(" to "),
     {T("Upload file to "), T("Send file to remote computer in "), nullptr},
     T("Upload File"),
     "arrow.up.doc",
     &UploadFileIntent::perform},
};

#undef T

QStringList withApplicationName(const IntentTable::Entry &entry, QString (*text)(const char *))
{
    QStringList list;
    for (const char *phrase : entry.phrases) {
        if (phrase)
            list << text(phrase) + QLatin1String(AppIdentity::applicationName);
    }
    return list;
}

} // namespace

std::span<const IntentTable::Entry> IntentTable::entries()
{
    return {std::begin(table), std::end(table)};
}

const IntentTable::Entry *IntentTable::find(QStringView command)
{
    for (const Entry &entry : table) {
        if (command == QLatin1StringView(entry.command))
            return &entry;
    }
    return nullptr;
}

QString IntentTable::text(const char *source)
{
    return QCoreApplication::translate("IntentTable", source);
}

QString IntentTable::summary(const Entry &entry, const QString &file, const QString &computer)
{
    QString result = text(entry.summaryLead);
    if (entry.file.isPresent())
        result += file + text(entry.summaryJoin);
    return result + computer;
}

QStringList IntentTable::phrases(const Entry &entry)
{
    return withApplicationName(entry, &IntentTable::text);
}

QStringList IntentTable::sourcePhrases(const Entry &entry)
{
    return withApplicationName(entry, [](const char *source) { return QString::fromUtf8(source); });
}
