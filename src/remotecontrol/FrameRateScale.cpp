#include "FrameRateScale.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>

double FrameRateScale::value(int position)
{
    return 1.0 + std::clamp(position, 0, maximumPosition) / 11.0;
}

int FrameRateScale::snapped(int position, int previous, bool stepwise)
{
    position = std::clamp(position, 0, maximumPosition);
    const int below = position / tickInterval * tickInterval;
    const int above = std::min(below == position ? below : below + tickInterval, maximumPosition);
    // Moving up: the last mark passed, or at least the first one after where it started.
    if (stepwise && position > previous)
        return below > previous
                   ? below
                   : std::min((previous / tickInterval + 1) * tickInterval, maximumPosition);
    if (stepwise && position < previous)
        return above < previous ? above : (previous - 1) / tickInterval * tickInterval;
    return position - below < above - position || above == below ? below : above;
}

int FrameRateScale::wholeFramesPerSecond(double value)
{
    return int(std::trunc(value));
}

QString FrameRateScale::text(double value)
{
    return QCoreApplication::translate("FrameRateScale", "%1 FPS").arg(wholeFramesPerSecond(value));
}
