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

QString tr(const char *source)
{
    return QCoreApplication::translate("TechnicalSpecPills", source);
}

Pill pill(const char *title, const QString &value, const char *symbol)
{
    return SpecPill{tr(title), value, QLatin1String(symbol)};
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
                *allowed ? tr(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Allowed"))
                         : tr(QT_TRANSLATE_NOOP("TechnicalSpecPills", "Needs Permission")),
                *allowed ? allowedSymbol : deniedSymbol);
}

#define TITLE(text) QT_TRANSLATE_NOOP("TechnicalSpecPills", text)

constexpr TechnicalSpecPills::Definition table[] = {
    {PreferenceKeys::pillsShowOS, TITLE("OS"), TITLE("OS"),
     [](const SystemStats &s) {
         return pill(TITLE("OS"), ReportedText::shown(s.osVersion), "applelogo");
     }},
    {PreferenceKeys::pillsShowModel, TITLE("Model"), TITLE("Model"),
     [](const SystemStats &s) {
         return pill(TITLE("Model"), ReportedText::shown(s.macModel), "laptopcomputer");
     }},
    {PreferenceKeys::pillsShowMemory, TITLE("Memory"), TITLE("Memory"),
     [](const SystemStats &s) {
         return pill(TITLE("Memory"),
                     ByteCountFormat::format(s.totalMemory, ByteCountFormat::Style::memory),
                     "memorychip");
     }},
    {PreferenceKeys::pillsShowDiskFree, TITLE("Disk Free"), TITLE("Disk Free"),
     [](const SystemStats &s) {
         return pill(TITLE("Disk Free"),
                     ByteCountFormat::format(s.freeDiskSpace, ByteCountFormat::Style::file),
                     "internaldrive");
     }},
    {PreferenceKeys::pillsShowUptime, TITLE("Uptime"), TITLE("Uptime"),
     [](const SystemStats &s) -> Pill {
         if (!s.uptimeSeconds)
             return std::nullopt;
         return pill(TITLE("Uptime"), UptimeFormat::format(*s.uptimeSeconds),
                     "clock.arrow.circlepath");
     }},
    {PreferenceKeys::pillsShowIPAddress, TITLE("IP Address"), TITLE("IP Address"),
     [](const SystemStats &s) {
         return textPill(TITLE("IP Address"), s.primaryIPAddress, "network");
     }},
    {PreferenceKeys::pillsShowLoggedInUser, TITLE("Logged-In User"), TITLE("Logged-In User"),
     [](const SystemStats &s) {
         return textPill(TITLE("Logged-In User"), s.loggedInUser, "person.crop.circle");
     }},
    {PreferenceKeys::pillsShowNetworkName, TITLE("Network"), TITLE("Network"),
     [](const SystemStats &s) { return textPill(TITLE("Network"), s.networkName, "wifi"); }},
    {PreferenceKeys::pillsShowDisplayCount, TITLE("Displays"), TITLE("Displays"),
     [](const SystemStats &s) -> Pill {
         if (!s.displayCount || *s.displayCount == 0)
             return std::nullopt;
         return pill(TITLE("Displays"), QString::number(*s.displayCount), "rectangle.on.rectangle");
     }},
    {PreferenceKeys::pillsShowMainResolution, TITLE("Main Resolution"), TITLE("Main Resolution"),
     [](const SystemStats &s) {
         return textPill(TITLE("Main Resolution"), s.mainDisplayResolution, "display");
     }},
    {PreferenceKeys::pillsShowAgentVersion, TITLE("Agent"), TITLE("Agent Version"),
     [](const SystemStats &s) { return textPill(TITLE("Agent"), s.agentVersion, "shippingbox"); }},
    {PreferenceKeys::pillsShowSession, TITLE("Lock Status"), TITLE("Lock Status"),
     [](const SystemStats &s) -> Pill {
         if (!s.screenLocked)
             return std::nullopt;
         return pill(TITLE("Lock Status"),
                     *s.screenLocked ? tr(TITLE("Locked")) : tr(TITLE("Unlocked")),
                     *s.screenLocked ? "lock.fill" : "lock.open");
     }},
    {PreferenceKeys::pillsShowScreenAccess, TITLE("Screen Access"), TITLE("Screen Access"),
     [](const SystemStats &s) {
         return permissionPill(TITLE("Screen Access"), s.screenCaptureAuthorized,
                               "checkmark.shield", "exclamationmark.triangle");
     }},
    {PreferenceKeys::pillsShowRemoteControl, TITLE("Remote Control"), TITLE("Remote Control"),
     [](const SystemStats &s) {
         return permissionPill(TITLE("Remote Control"), s.accessibilityAuthorized,
                               "cursorarrow.motionlines", "hand.raised");
     }},
    {PreferenceKeys::pillsShowFrontApp, TITLE("Front App"), TITLE("Front App"),
     [](const SystemStats &s) {
         return textPill(TITLE("Front App"), s.activeProcess, "app.badge.fill");
     }},
};

#undef TITLE

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
