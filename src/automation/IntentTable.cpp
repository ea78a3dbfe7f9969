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

constexpr IntentTable::Parameter none{nullptr, nullptr};
constexpr const char *computerTitle = QT_TRANSLATE_NOOP("IntentTable", "Computer");
constexpr const char *computerNameTitle = QT_TRANSLATE_NOOP("IntentTable", "Computer Name");

const IntentTable::Entry table[] = {
    {"connect",
     QT_TRANSLATE_NOOP("IntentTable", "Connect to Remote Computer"),
     none,
     {computerTitle, QT_TRANSLATE_NOOP("IntentTable", "The remote computer to connect to")},
     {computerNameTitle, QT_TRANSLATE_NOOP("IntentTable", "Name of the computer to connect to")},
     QT_TRANSLATE_NOOP("IntentTable", "Connect to "),
     nullptr,
     {QT_TRANSLATE_NOOP("IntentTable", "Connect to "),
      QT_TRANSLATE_NOOP("IntentTable", "Connect to remote computer in "),
      QT_TRANSLATE_NOOP("IntentTable", "Connect to server in ")},
     QT_TRANSLATE_NOOP("IntentTable", "Connect to Computer"),
     "desktopcomputer",
     &ConnectToComputerIntent::perform},
    {"disconnect",
     QT_TRANSLATE_NOOP("IntentTable", "Disconnect from Remote Computer"),
     none,
     {computerTitle, QT_TRANSLATE_NOOP("IntentTable", "The remote computer to disconnect from")},
     {computerNameTitle,
      QT_TRANSLATE_NOOP("IntentTable", "Name of the computer to disconnect from")},
     QT_TRANSLATE_NOOP("IntentTable", "Disconnect from "),
     nullptr,
     {QT_TRANSLATE_NOOP("IntentTable", "Disconnect from "),
      QT_TRANSLATE_NOOP("IntentTable", "Disconnect from remote computer in "), nullptr},
     QT_TRANSLATE_NOOP("IntentTable", "Disconnect from Computer"),
     "desktopcomputer.and.arrow.down",
     &DisconnectFromComputerIntent::perform},
    {"remote-control",
     QT_TRANSLATE_NOOP("IntentTable", "Start Remote Control"),
     none,
     {computerTitle, QT_TRANSLATE_NOOP("IntentTable", "The computer to start remote controlling")},
     {computerNameTitle, QT_TRANSLATE_NOOP("IntentTable", "Name of the computer to control")},
     QT_TRANSLATE_NOOP("IntentTable", "Start remote control of "),
     nullptr,
     {QT_TRANSLATE_NOOP("IntentTable", "Start remote control in "),
      QT_TRANSLATE_NOOP("IntentTable", "Control remote computer in "),
      QT_TRANSLATE_NOOP("IntentTable", "Take control of computer in ")},
     QT_TRANSLATE_NOOP("IntentTable", "Start Remote Control"),
     "cursorarrow.click",
     &StartRemoteControlIntent::perform},
    {"stop-remote-control",
     QT_TRANSLATE_NOOP("IntentTable", "Stop Remote Control"),
     none,
     {computerTitle, QT_TRANSLATE_NOOP("IntentTable", "The computer to stop remote controlling")},
     {computerNameTitle,
      QT_TRANSLATE_NOOP("IntentTable", "Name of the computer to stop controlling")},
     QT_TRANSLATE_NOOP("IntentTable", "Stop remote control of "),
     nullptr,
     {QT_TRANSLATE_NOOP("IntentTable", "Stop remote control in "),
      QT_TRANSLATE_NOOP("IntentTable", "Stop controlling computer in "), nullptr},
     QT_TRANSLATE_NOOP("IntentTable", "Stop Remote Control"),
     "cursorarrow.click.badge.clock",
     &StopRemoteControlIntent::perform},
    {"status",
     QT_TRANSLATE_NOOP("IntentTable", "Get Computer Status"),
     none,
     {computerTitle, QT_TRANSLATE_NOOP("IntentTable", "The computer to check status for")},
     {computerNameTitle, QT_TRANSLATE_NOOP("IntentTable", "Name of the computer to check")},
     QT_TRANSLATE_NOOP("IntentTable", "Get status of "),
     nullptr,
     {QT_TRANSLATE_NOOP("IntentTable", "Check status in "),
      QT_TRANSLATE_NOOP("IntentTable", "Get computer status in "),
      QT_TRANSLATE_NOOP("IntentTable", "Check remote computer status in ")},
     QT_TRANSLATE_NOOP("IntentTable", "Check Computer Status"),
     "info.circle",
     &GetComputerStatusIntent::perform},
    {"upload",
     QT_TRANSLATE_NOOP("IntentTable", "Upload File"),
     {QT_TRANSLATE_NOOP("IntentTable", "File"),
      QT_TRANSLATE_NOOP("IntentTable", "The file to upload")},
     {computerTitle, QT_TRANSLATE_NOOP("IntentTable", "The computer to upload the file to")},
     {computerNameTitle, QT_TRANSLATE_NOOP("IntentTable", "Name of the computer to upload to")},
     QT_TRANSLATE_NOOP("IntentTable", "Upload "),
     QT_TRANSLATE_NOOP("IntentTable", " to "),
     {QT_TRANSLATE_NOOP("IntentTable", "Upload file to "),
      QT_TRANSLATE_NOOP("IntentTable", "Send file to remote computer in "), nullptr},
     QT_TRANSLATE_NOOP("IntentTable", "Upload File"),
     "arrow.up.doc",
     &UploadFileIntent::perform},
};

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
