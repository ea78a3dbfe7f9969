#pragma once

#include <QByteArray>
#include <QImage>
#include <functional>

// Makes the small preview image of a computer: the whole screen scaled so that its longest
// side is the maximum dimension (small screens are enlarged), as JPEG at quality 82, or
// PNG when JPEG encoding fails.
class Thumbnailer {
public:
    using Encoder = std::function<QByteArray(const QImage &image)>;

    static constexpr int jpegQuality = 82;

    Thumbnailer();

    // Empty bytes when the image has no area or no encoder worked. Logs the outcome.
    QByteArray createThumbnail(const QImage &image, int maximumDimension) const;

    // The whole image drawn at the given size with area averaging; cheap for the usual
    // screen sizes (halving, then two thirds, before any general smooth scaling).
    static QImage scale(const QImage &image, int width, int height);
    // Half the size, each pixel the exact average of a 2 x 2 block (32-bit images only;
    // others are converted first).
    static QImage halve(const QImage &image);
    static QByteArray encodeJpeg(const QImage &image);
    static QByteArray encodePng(const QImage &image);
    // Tests replace the JPEG encoder to reach the PNG fallback.
    void setJpegEncoderForTesting(Encoder encoder) { m_jpegEncoder = std::move(encoder); }

private:
    Encoder m_jpegEncoder;
};
