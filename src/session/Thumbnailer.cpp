#include "Thumbnailer.h"

#include "model/LogManager.h"

#include <QBuffer>
#include <QImageWriter>
#include <turbojpeg.h>

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

// Average of two 0xAARRGGBB words per channel, rounded down, without unpacking.
inline quint32 average(quint32 a, quint32 b)
{
    return (a & b) + (((a ^ b) & 0xFEFEFEFEu) >> 1);
}

// Each output pixel is the average of a 2 x 2 block: an exact area average at half size,
// several times cheaper than the general smooth scaler on the full image.
QImage halve(const QImage &source)
{
    const int width = source.width() / 2;
    const int height = source.height() / 2;
    QImage half(width, height, source.format());
    if (half.isNull())
        return {};
    for (int y = 0; y < height; ++y) {
        const auto *top = reinterpret_cast<const quint32 *>(source.constScanLine(2 * y));
        const auto *bottom = reinterpret_cast<const quint32 *>(source.constScanLine(2 * y + 1));
        auto *out = reinterpret_cast<quint32 *>(half.scanLine(y));
        for (int x = 0; x < width; ++x)
            out[x] = average(average(top[2 * x], top[2 * x + 1]),
                             average(bottom[2 * x], bottom[2 * x + 1]));
    }
    return half;
}

// Halves while the image is at least twice the target, then lets Qt's smooth scaler (an
// area average when shrinking) do the rest on the small image.
QImage scaleSmoothly(const QImage &image, int width, int height)
{
    QImage source = image;
    if (source.width() >= 2 * width && source.height() >= 2 * height) {
        if (source.format() != QImage::Format_RGB32 &&
            source.format() != QImage::Format_ARGB32_Premultiplied)
            source = source.convertToFormat(source.hasAlphaChannel()
                                                ? QImage::Format_ARGB32_Premultiplied
                                                : QImage::Format_RGB32);
        while (!source.isNull() && source.width() >= 2 * width && source.height() >= 2 * height)
            source = halve(source);
    }
    if (source.isNull())
        return {};
    return source.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

Thumbnailer::Thumbnailer() : m_jpegEncoder(&Thumbnailer::encodeJpeg) {}

QByteArray Thumbnailer::encodeJpeg(const QImage &image)
{
    // TurboJPEG reads Qt's 32-bit pixels directly; it is the cheaper encoder per frame.
    const QImage pixels = image.format() == QImage::Format_RGB32
                              ? image
                              : image.convertToFormat(QImage::Format_RGB32);
    tjhandle handle = tjInitCompress();
    if (!handle || pixels.isNull())
        return encode(image, "jpeg", jpegQuality);
    unsigned char *jpeg = nullptr;
    unsigned long size = 0;
    const int pixelFormat = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? TJPF_BGRX : TJPF_XRGB;
    QByteArray bytes;
    if (tjCompress2(handle, pixels.constBits(), pixels.width(), int(pixels.bytesPerLine()),
                    pixels.height(), pixelFormat, &jpeg, &size, TJSAMP_420, jpegQuality, 0) == 0)
        bytes = QByteArray(reinterpret_cast<const char *>(jpeg), qsizetype(size));
    tjFree(jpeg);
    tjDestroy(handle);
    return bytes;
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
    const QImage canvas = scaleSmoothly(image, qMax(1, int(width)), qMax(1, int(height)));

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
