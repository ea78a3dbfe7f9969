#include "LaunchAnimationMetrics.h"

#include <QPointF>
#include <algorithm>
#include <cmath>

LaunchAnimationMetrics LaunchAnimationMetrics::forShorterSide(qreal shorterSide)
{
    LaunchAnimationMetrics metrics;
    if (!std::isfinite(shorterSide) || shorterSide <= 1)
        return metrics;
    metrics.ringDiameter = std::max(minimumRingDiameter, ringDiameterPerSide * shorterSide);
    metrics.strokeWidth = std::max(minimumStrokeWidth, strokeWidthPerSide * shorterSide);
    return metrics;
}

LaunchAnimationMetrics LaunchAnimationMetrics::forScreenSize(const QSizeF &size)
{
    return forShorterSide(std::min(size.width(), size.height()));
}

QColor LaunchAnimationMetrics::ringColor()
{
    return QColor::fromRgbF(0.6823529411764706f, 0.10588235294117647f, 0.7803921568627451f,
                            float(ringOpacity));
}

QEasingCurve LaunchAnimationMetrics::easeOut()
{
    // One cubic segment from (0, 0) to (1, 1) with the control points (0, 0) and (0.58, 1).
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0, 0), QPointF(0.58, 1), QPointF(1, 1));
    return curve;
}
