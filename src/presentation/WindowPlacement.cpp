#include "WindowPlacement.h"

namespace WindowPlacement {

QRect onVisibleScreen(const QRect &stored, const QList<QRect> &screens, const QRect &primary,
                      const QSize &minimum)
{
    for (const QRect &screen : screens) {
        const QRect shown = stored.intersected(screen);
        if (shown.width() >= visibleWidth && shown.height() >= visibleHeight &&
            stored.top() >= screen.top())
            return stored;
    }
    const QSize size =
        stored.size().boundedTo(primary.size()).expandedTo(minimum).expandedTo(QSize(1, 1));
    QRect placed(QPoint(), size);
    placed.moveCenter(primary.center());
    // A screen smaller than the minimum: keep the title bar on it.
    placed.moveTop(std::max(placed.top(), primary.top()));
    placed.moveLeft(std::max(placed.left(), primary.left()));
    return placed;
}

} // namespace WindowPlacement
