#include "RemoteWindowSizing.h"

#include <algorithm>
#include <cmath>

double RemoteWindowSizing::aspectRatio(const QSizeF &serverScreenSize)
{
    if (serverScreenSize.width() > 0 && serverScreenSize.height() > 0)
        return serverScreenSize.width() / serverScreenSize.height();
    return defaultAspectRatio;
}

std::optional<RemoteWindowSizing::InitialResize>
RemoteWindowSizing::initialResize(const QSizeF &serverScreenSize, const QSizeF &visibleArea)
{
    if (!(serverScreenSize.width() > 0 && serverScreenSize.height() > 0))
        return std::nullopt;
    const double a = serverScreenSize.width() / serverScreenSize.height();
    const double w = visibleArea.width(), h = visibleArea.height();
    const double maxWidth = std::min(0.85 * w, 1000.0);
    const double maxHeight = 0.85 * h;
    const double widthForHeight = a * (maxHeight - controlPanelHeight);
    double minWidth = minimumContentWidth;
    if (0.85 * w < minimumContentWidth)
        minWidth = std::max(std::min(widthForHeight, 0.85 * w), 320.0);
    else if (widthForHeight < minimumContentWidth)
        minWidth = std::max(widthForHeight, 320.0);
    const double target = maxHeight < maxWidth / a + controlPanelHeight ? widthForHeight : maxWidth;
    const double width = std::max(minWidth, target);
    return InitialResize{a, QSizeF(minWidth, minWidth / a + controlPanelHeight),
                         QSizeF(width, width / a + controlPanelHeight)};
}

QSizeF RemoteWindowSizing::allowedContentSize(const QSizeF &proposed,
                                              const QSizeF &serverScreenSize,
                                              const QSizeF &visibleArea)
{
    const double a = aspectRatio(serverScreenSize);
    const double h = std::max(proposed.height() - controlPanelHeight, 1.0);
    double width = std::abs(proposed.width() / h - a) > aspectTolerance ? a * h : proposed.width();
    // A window wider than the screen could not be used; the image then stretches a little.
    if (visibleArea.width() > 0)
        width = std::min(width, std::max(visibleArea.width(), minimumContentWidth));
    width = std::max(width, minimumContentWidth);
    const double height = std::max(proposed.height(), minimumContentWidth / a + controlPanelHeight);
    return QSizeF(width, height);
}
