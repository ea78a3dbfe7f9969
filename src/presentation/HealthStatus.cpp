#include "HealthStatus.h"

HealthStatus HealthStatus::of(bool isConnected, bool isConnecting, bool hasError)
{
    if (isConnected)
        return {tr("Connected"), Tone::green};
    if (isConnecting)
        return {tr("Connecting"), Tone::blue};
    if (hasError)
        return {tr("Issue"), Tone::orange};
    return {tr("Offline"), Tone::secondary};
}
