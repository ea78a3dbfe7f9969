#pragma once

#include <QPointF>
#include <QSizeF>
#include <QString>
#include <optional>

// Where a pointer position in the image view lands on the remote screen. The view stretches
// the remote screen over its whole area, so each axis scales on its own; the remote origin
// is the bottom-left corner.
class RemoteCoordinateMapping {
public:
    // One axis: `clientCoordinate` within `clientSize` (both in the view's units) to remote
    // pixels of `serverSize`. Input or a result that cannot be a remote coordinate logs one
    // "ERROR" line and gives 0.
    static double convert(double clientCoordinate, double clientSize, double serverSize);

    // A position in the view's own coordinates (origin top left, as Qt reports it) to remote
    // pixels, or none when it lies outside the view (0 <= x < width, 0 <= y < height). The
    // top-left corner maps to y = the remote height.
    static std::optional<QPointF> map(const QPointF &position, const QSizeF &viewSize,
                                      const QSizeF &serverSize);

    // The shortest text that reads back as the same double, with ".0" on whole values
    // ("1280.0", "0.5", "1e+16", "nan", "inf").
    static QString numberText(double value);
};
