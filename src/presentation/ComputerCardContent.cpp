#include "ComputerCardContent.h"

#include "DateTimeText.h"
#include "ReportedText.h"
#include "model/RemoteComputer.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"

ComputerCardContent::Switches ComputerCardContent::Switches::fromPreferences()
{
    const Preferences &preferences = Preferences::shared();
    const auto on = [&preferences](const char *key) {
        return preferences.boolValue(QLatin1String(key));
    };
    return {on(PreferenceKeys::dashboardShowHealthMetrics),
            on(PreferenceKeys::dashboardShowTechnicalSpecs),
            on(PreferenceKeys::dashboardShowScreenPreview),
            TechnicalSpecPills::switchesFromPreferences()};
}

QString ComputerCardContent::titleOf(const RemoteComputer &computer)
{
    if (computer.name && !computer.name->isEmpty())
        return *computer.name;
    if (!computer.host.isEmpty())
        return computer.host;
    return tr("Unknown Computer");
}

ComputerCardContent ComputerCardContent::of(const RemoteComputer &computer,
                                            const Switches &switches, const QLocale &locale)
{
    ComputerCardContent content;
    content.title = titleOf(computer);
    content.subtitle = computer.connectionString();
    content.badge = HealthStatus::of(computer.isConnected, computer.isConnecting,
                                     computer.lastError.has_value());
    if (!computer.isConnected && computer.lastError)
        content.errorText = ReportedText::shown(*computer.lastError);
    if (computer.systemStats) {
        if (switches.showHealthMetrics)
            content.gauges = MetricGauge::gauges(*computer.systemStats);
        if (switches.showTechnicalSpecs)
            content.pills = TechnicalSpecPills::pills(*computer.systemStats, switches.pills);
    } else if (switches.showHealthMetrics || switches.showTechnicalSpecs) {
        content.showPlaceholder = true;
        if (computer.lastConnected && computer.lastConnected->isValid())
            content.lastConnectedText =
                tr("Last connected %1").arg(DateTimeText::format(*computer.lastConnected, locale));
    }
    content.showPreview = switches.showScreenPreview;
    if (content.showPreview)
        content.thumbnail = computer.thumbnailImage;
    content.isConnected = computer.isConnected;
    return content;
}
