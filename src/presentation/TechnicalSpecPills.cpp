#include "TechnicalSpecPills.h"

#include "ByteCountFormat.h"
#include "ReportedText.h"
#include "UptimeFormat.h"
#include "model/SystemStats.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"

#include <iterator>

namespace {

using Pill = std::optional<SpecPill>;

QString translated(const char *source)
{
    return QCoreApplication::translate("TechnicalSpecPills", source);
}

Pill pill(const char *title, const QString &value, const char *symbol)
{
    return SpecPill{translated(title), value, QLatin1String(symbol)};
}

// A text pill shows only a text that is present and not empty.
Pill textPill(const char *title, const std::optional<QString> &value, const char *symbol)
{
    if (!value || value->isEmpty())
        return std::nullopt;
    return pill(title, ReportedText::shown(*value), symbol);
}

Pill permissionPill(const char *title, std::optional<bool> allowed, const char *allowedSymbol,
                    const char *deniedSymbol)
{
    if (!allowed)
        return std::nullopt;
    return pill(title,
                *allowed ? translated(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Allowed"))
                         : translated(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Needs Permission")),
                *allowed ? allowedSymbol : deniedSymbol);
}

constexpr TechnicalSpecPills::Definition table[] = {
    {PreferenceKeys::pillsShowOS, QT_TRANSLATE_NOOP("TechnicalSpecPills", "OS"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "OS"),
     [](const SystemStats &s) {
         return pill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "OS"),
                     ReportedText::shown(s.osVersion), "applelogo");
     }},
    {PreferenceKeys::pillsShowModel, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Model"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Model"),
     [](const SystemStats &s) {
         return pill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Model"),
                     ReportedText::shown(s.macModel), "laptopcomputer");
     }},
    {PreferenceKeys::pillsShowMemory, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Memory"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Memory"),
     [](const SystemStats &s) {
         return pill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Memory"),
                     ByteCountFormat::format(s.totalMemory, ByteCountFormat::Style::memory),
                     "memorychip");
     }},
    {PreferenceKeys::pillsShowDiskFree, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Disk Free"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Disk Free"),
     [](const SystemStats &s) {
         return pill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Disk Free"),
                     ByteCountFormat::format(s.freeDiskSpace, ByteCountFormat::Style::file),
                     "internaldrive");
     }},
    {PreferenceKeys::pillsShowUptime, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Uptime"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Uptime"),
     [](const SystemStats &s) -> Pill {
         if (!s.uptimeSeconds)
             return std::nullopt;
         return pill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Uptime"),
                     UptimeFormat::format(*s.uptimeSeconds), "clock.arrow.circlepath");
     }},
    {PreferenceKeys::pillsShowIPAddress, QT_TRANSLATE_NOOP("TechnicalSpecPills", "IP Address"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "IP Address"),
     [](const SystemStats &s) {
         return textPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "IP Address"), s.primaryIPAddress,
                         "network");
     }},
    {PreferenceKeys::pillsShowLoggedInUser,
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Logged-In User"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Logged-In User"),
     [](const SystemStats &s) {
         return textPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Logged-In User"), s.loggedInUser,
                         "person.crop.circle");
     }},
    {PreferenceKeys::pillsShowNetworkName, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Network"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Network"),
     [](const SystemStats &s) {
         return textPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Network"), s.networkName, "wifi");
     }},
    {PreferenceKeys::pillsShowDisplayCount, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Displays"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Displays"),
     [](const SystemStats &s) -> Pill {
         if (!s.displayCount || *s.displayCount == 0)
             return std::nullopt;
         return pill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Displays"),
                     QString::number(*s.displayCount), "rectangle.on.rectangle");
     }},
    {PreferenceKeys::pillsShowMainResolution,
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Main Resolution"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Main Resolution"),
     [](const SystemStats &s) {
         return textPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Main Resolution"),
                         s.mainDisplayResolution, "display");
     }},
    {PreferenceKeys::pillsShowAgentVersion, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Agent"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Agent Version"),
     [](const SystemStats &s) {
         return textPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Agent"), s.agentVersion,
                         "shippingbox");
     }},
    {PreferenceKeys::pillsShowSession, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Lock Status"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Lock Status"),
     [](const SystemStats &s) -> Pill {
         if (!s.screenLocked)
             return std::nullopt;
         return pill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Lock Status"),
                     *s.screenLocked
                         ? translated(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Locked"))
                         : translated(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Unlocked")),
                     *s.screenLocked ? "lock.fill" : "lock.open");
     }},
    {PreferenceKeys::pillsShowScreenAccess,
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Screen Access"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Screen Access"),
     [](const SystemStats &s) {
         return permissionPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Screen Access"),
                               s.screenCaptureAuthorized, "checkmark.shield",
                               "exclamationmark.triangle");
     }},
    {PreferenceKeys::pillsShowRemoteControl,
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Remote Control"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Remote Control"),
     [](const SystemStats &s) {
         return permissionPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Remote Control"),
                               s.accessibilityAuthorized, "cursorarrow.motionlines", "hand.raised");
     }},
    {PreferenceKeys::pillsShowFrontApp, QT_TRANSLATE_NOOP("TechnicalSpecPills", "Front App"),
     QT_TRANSLATE_NOOP("TechnicalSpecPills", "Front App"),
     [](const SystemStats &s) {
         return textPill(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Front App"), s.activeProcess,
                         "app.badge.fill");
     }},
};

} // namespace

std::span<const TechnicalSpecPills::Definition> TechnicalSpecPills::definitions()
{
    return {std::begin(table), std::end(table)};
}

TechnicalSpecPills::Switches TechnicalSpecPills::allOn()
{
    return (Switches(1) << std::size(table)) - 1;
}

TechnicalSpecPills::Switches TechnicalSpecPills::switchesFromPreferences()
{
    Switches switches = 0;
    for (size_t i = 0; i < std::size(table); ++i) {
        if (Preferences::shared().boolValue(QLatin1String(table[i].preferenceKey)))
            switches |= Switches(1) << i;
    }
    return switches;
}

bool TechnicalSpecPills::isSwitchKey(const QString &key)
{
    for (const Definition &definition : table) {
        if (key == QLatin1String(definition.preferenceKey))
            return true;
    }
    return false;
}

QList<SpecPill> TechnicalSpecPills::pills(const SystemStats &stats, Switches switches)
{
    QList<SpecPill> pills;
    for (size_t i = 0; i < std::size(table); ++i) {
        if (!(switches & (Switches(1) << i)))
            continue;
        if (std::optional<SpecPill> pill = table[i].make(stats))
            pills.append(std::move(*pill));
    }
    return pills;
}
