#pragma once

#include <QList>
#include <QRect>

// Where a window whose geometry was stored opens: where it was, when enough of it lies on
// a screen that is still there to grab it; else centred on the primary screen, no larger
// than that screen's free area (nor smaller than the window's minimum).
namespace WindowPlacement {

// How much of a window must show on some screen to count as visible.
inline constexpr int visibleWidth = 120;
inline constexpr int visibleHeight = 60;

QRect onVisibleScreen(const QRect &stored, const QList<QRect> &screens, const QRect &primary,
                      const QSize &minimum);

} // namespace WindowPlacement
