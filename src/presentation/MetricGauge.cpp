#include "MetricGauge.h"

#include "model/SystemStats.h"

#include <cmath>

Tone MetricGauge::tone() const
{
    if (std::isnan(value) || value < 0)
        return Tone::accent;
    if (value >= 0.9)
        return Tone::red;
    if (value >= 0.75)
        return Tone::orange;
    return Tone::accent;
}

double MetricGauge::fill() const
{
    if (std::isnan(value))
        return 0;
    return std::clamp(value, 0.0, 1.0);
}

QString MetricGauge::label() const
{
    // The product is taken in double as it stands, so 0.57 shows 56%: 0.57 * 100 is
    // 56.99999999999999 in binary floating point.
    const int percent = std::isnan(value) || value < 0 ? 0 : int(std::min(value, 1.0) * 100);
    return tr("%1%").arg(percent);
}

QString MetricGauge::accessibleText() const
{
    return tr("%1 %2").arg(title, label());
}

double MetricGauge::usedFraction(quint64 total, quint64 free)
{
    if (total == 0 || free >= total)
        return 0;
    return double(total - free) / double(total);
}

QList<MetricGauge> MetricGauge::gauges(const SystemStats &stats)
{
    return {
        {tr("CPU"), stats.cpuUsage.value_or(0.0), QStringLiteral("cpu")},
        {tr("Memory"), usedFraction(stats.totalMemory, stats.freeMemory),
         QStringLiteral("memorychip")},
        {tr("Disk"), usedFraction(stats.totalDiskSpace, stats.freeDiskSpace),
         QStringLiteral("internaldrive")},
    };
}

bool MetricGauge::operator==(const MetricGauge &other) const
{
    const bool sameValue = value == other.value || (std::isnan(value) && std::isnan(other.value));
    return sameValue && title == other.title && systemImage == other.systemImage;
}
