#include "Thumbnailer.h"

#include "model/LogManager.h"

#include <QBuffer>
#include <QImageWriter>

namespace {

QByteArray encode(const QImage &image, const char *format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (quality >= 0)
        writer.setQuality(quality);
    if (!writer.write(image))
        return {};
    return bytes;
}

} // namespace

Thumbnailer::Thumbnailer() : m_jpegEncoder(&Thumbnailer::encodeJpeg) {}

QByteArray Thumbnailer::encodeJpeg(const QImage &image)
{
    return encode(image, "jpeg", jpegQuality);
}

QByteArray Thumbnailer::encodePng(const QImage &image)
{
    return encode(image, "png", -1);
}

QByteArray Thumbnailer::createThumbnail(const QImage &image, int maximumDimension) const
{
    const double w = image.width() / image.devicePixelRatio();
    const double h = image.height() / image.devicePixelRatio();
    if (w <= 0 || h <= 0) {
        LogManager::shared().log(QStringLiteral("Invalid image size: %1x%2").arg(w).arg(h),
                                 QStringLiteral("ERROR"));
        return {};
    }
    const double aspect = w / h;
    const double width = aspect <= 1.0 ? aspect * maximumDimension : maximumDimension;
    const double height = aspect <= 1.0 ? maximumDimension : maximumDimension / aspect;
    // Qt's smooth scaler averages whole areas when shrinking, one pass over the source.
    const QImage canvas = image.scaled(qMax(1, int(width)), qMax(1, int(height)),
                                       Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

    const QByteArray jpeg = canvas.isNull() ? QByteArray() : m_jpegEncoder(canvas);
    if (!jpeg.isEmpty()) {
        LogManager::shared().log(QStringLiteral("Created thumbnail: %1x%2 → %3x%4, %5 bytes")
                                     .arg(qint64(w))
                                     .arg(qint64(h))
                                     .arg(qint64(width))
                                     .arg(qint64(height))
                                     .arg(jpeg.size()),
                                 QStringLiteral("SCREEN"));
        return jpeg;
    }
    LogManager::shared().log(QStringLiteral("Failed to create JPEG thumbnail, trying PNG fallback"),
                             QStringLiteral("WARN"));
    return canvas.isNull() ? QByteArray() : encodePng(canvas);
}
