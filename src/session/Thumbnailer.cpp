#include "Thumbnailer.h"

#include "model/LogManager.h"

#include <QBuffer>
#include <QImageWriter>
#include <turbojpeg.h>
#include <vector>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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
QImage halveBlocks(const QImage &source)
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
        int x = 0;
#if defined(__SSE2__)
        // Four output pixels a step: average the rows, then the even and odd columns.
        for (; x + 4 <= width; x += 4) {
            const auto load = [](const quint32 *p) {
                return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            };
            const __m128 left =
                _mm_castsi128_ps(_mm_avg_epu8(load(top + 2 * x), load(bottom + 2 * x)));
            const __m128 right =
                _mm_castsi128_ps(_mm_avg_epu8(load(top + 2 * x + 4), load(bottom + 2 * x + 4)));
            const __m128i even = _mm_castps_si128(_mm_shuffle_ps(left, right, 0x88));
            const __m128i odd = _mm_castps_si128(_mm_shuffle_ps(left, right, 0xDD));
            _mm_storeu_si128(reinterpret_cast<__m128i *>(out + x), _mm_avg_epu8(even, odd));
        }
#endif
        for (; x < width; ++x)
            out[x] = average(average(top[2 * x], top[2 * x + 1]),
                             average(bottom[2 * x], bottom[2 * x + 1]));
    }
    return half;
}

// (2 × own + middle) / 3 per 8-bit channel, rounded: one output pixel of a 3-to-2 shrink.
inline quint32 twoThirds(quint32 own, quint32 middle)
{
    quint32 result = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const quint32 sum = 2 * ((own >> shift) & 0xFF) + ((middle >> shift) & 0xFF) + 1;
        result |= ((sum * 21846) >> 16) << shift;
    }
    return result;
}

#if defined(__SSE2__)
// The same for four pixels at once, in 16-bit lanes.
inline __m128i twoThirds(__m128i own, __m128i middle)
{
    const __m128i zero = _mm_setzero_si128();
    const auto lanes = [](__m128i o, __m128i m) {
        const __m128i sum = _mm_add_epi16(_mm_add_epi16(_mm_add_epi16(o, o), m), _mm_set1_epi16(1));
        return _mm_mulhi_epu16(sum, _mm_set1_epi16(21846));
    };
    return _mm_packus_epi16(lanes(_mm_unpacklo_epi8(own, zero), _mm_unpacklo_epi8(middle, zero)),
                            lanes(_mm_unpackhi_epi8(own, zero), _mm_unpackhi_epi8(middle, zero)));
}

inline __m128i load4(const quint32 *p)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
}
#endif

// Rows: from three source rows to two, each output row weighing its own row 2 and the
// shared middle row 1.
void shrinkRows(const quint32 *r0, const quint32 *r1, const quint32 *r2, quint32 *upper,
                quint32 *lower, int width)
{
    int x = 0;
#if defined(__SSE2__)
    for (; x + 4 <= width; x += 4) {
        _mm_storeu_si128(reinterpret_cast<__m128i *>(upper + x),
                         twoThirds(load4(r0 + x), load4(r1 + x)));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(lower + x),
                         twoThirds(load4(r2 + x), load4(r1 + x)));
    }
#endif
    for (; x < width; ++x) {
        upper[x] = twoThirds(r0[x], r1[x]);
        lower[x] = twoThirds(r2[x], r1[x]);
    }
}

// Columns: from every three source pixels to two.
void shrinkColumns(const quint32 *in, int inWidth, quint32 *out, int outWidth)
{
    int x = 0;
#if defined(__SSE2__)
    // Four outputs from six inputs; the loads reach two pixels further.
    for (; x + 4 <= outWidth && x / 2 * 3 + 8 <= inWidth; x += 4) {
        const __m128 a = _mm_castsi128_ps(load4(in + x / 2 * 3));
        const __m128 b = _mm_castsi128_ps(load4(in + x / 2 * 3 + 4));
        const __m128 c = _mm_shuffle_ps(a, b, _MM_SHUFFLE(1, 1, 3, 3)); // p3 p3 p5 p5
        const __m128i own = _mm_castps_si128(_mm_shuffle_ps(a, c, _MM_SHUFFLE(2, 0, 2, 0)));
        const __m128i middle = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(0, 0, 1, 1)));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out + x), twoThirds(own, middle));
    }
#endif
    for (; x + 1 < outWidth; x += 2) {
        const quint32 *group = in + x / 2 * 3;
        out[x] = twoThirds(group[0], group[1]);
        out[x + 1] = twoThirds(group[2], group[1]);
    }
}

// Exact area average from 3 x 3 source pixels to 2 x 2 output pixels.
QImage shrinkByTwoThirds(const QImage &source)
{
    const int width = source.width() / 3 * 2;
    const int height = source.height() / 3 * 2;
    QImage out(width, height, source.format());
    if (out.isNull())
        return {};
    std::vector<quint32> rows(size_t(source.width()) * 2);
    quint32 *upper = rows.data();
    quint32 *lower = upper + source.width();
    const auto line = [&source](int y) {
        return reinterpret_cast<const quint32 *>(source.constScanLine(y));
    };
    for (int y = 0; y + 1 < height; y += 2) {
        shrinkRows(line(y / 2 * 3), line(y / 2 * 3 + 1), line(y / 2 * 3 + 2), upper, lower,
                   source.width());
        shrinkColumns(upper, source.width(), reinterpret_cast<quint32 *>(out.scanLine(y)), width);
        shrinkColumns(lower, source.width(), reinterpret_cast<quint32 *>(out.scanLine(y + 1)),
                      width);
    }
    return out;
}

// Halves while the image is at least twice the target, takes two thirds when that lands
// exactly on it (1920 -> 960 -> 640), and lets Qt's smooth scaler (an area average when
// shrinking) do any rest on the small image.
} // namespace

QImage Thumbnailer::scale(const QImage &image, int width, int height)
{
    QImage source = image;
    if (source.width() >= 2 * width && source.height() >= 2 * height) {
        if (source.format() != QImage::Format_RGB32 &&
            source.format() != QImage::Format_ARGB32_Premultiplied)
            source = source.convertToFormat(source.hasAlphaChannel()
                                                ? QImage::Format_ARGB32_Premultiplied
                                                : QImage::Format_RGB32);
        while (!source.isNull() && source.width() >= 2 * width && source.height() >= 2 * height)
            source = halveBlocks(source);
        if (!source.isNull() && source.width() == width * 3 / 2 && width % 2 == 0 &&
            source.height() == height * 3 / 2 && height % 2 == 0)
            source = shrinkByTwoThirds(source);
    }
    if (source.isNull())
        return {};
    if (source.size() == QSize(width, height))
        return source;
    return source.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage Thumbnailer::halve(const QImage &image)
{
    if (image.format() == QImage::Format_RGB32 ||
        image.format() == QImage::Format_ARGB32_Premultiplied)
        return halveBlocks(image);
    return halveBlocks(image.convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32));
}

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
    const QImage canvas = scale(image, qMax(1, int(width)), qMax(1, int(height)));

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
