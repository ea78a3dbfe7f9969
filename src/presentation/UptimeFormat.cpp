#include "UptimeFormat.h"

QString UptimeFormat::format(quint64 seconds)
{
    const quint64 days = seconds / 86400;
    const quint64 hours = (seconds % 86400) / 3600;
    const quint64 minutes = (seconds % 3600) / 60;
    if (seconds >= 86400)
        return tr("%1d %2h").arg(days).arg(hours);
    if (seconds >= 3600)
        return tr("%1h %2m").arg(hours).arg(minutes);
    return tr("%1m").arg(minutes);
}
