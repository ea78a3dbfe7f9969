#include "FrameScaler.h"

#include "session/Thumbnailer.h"

#include <QPainter>

QImage FrameScaler::scaled(const QImage &frame, const QSize &size, QImage canvas)
{
    if (frame.isNull() || size.isEmpty())
        return {};
    QImage source = frame;
    while (source.width() >= 2 * size.width() && source.height() >= 2 * size.height())
        source = Thumbnailer::halve(source);
    if (source.size() == size)
        return source;
    if (canvas.size() != size || canvas.format() != QImage::Format_RGB32 ||
        canvas.devicePixelRatio() != 1)
        canvas = QImage(size, QImage::Format_RGB32);
    QPainter painter(&canvas);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(QPoint(), size), source);
    return canvas;
}
