#pragma once

#include <QByteArray>
#include <QImage>

// Fast JPEG decoding through TurboJPEG into 32-bit RGB images. Not thread-safe: one
// instance per thread.
class TurboJpegDecoder {
public:
    // Frames larger than this many pixels are refused before any allocation.
    static constexpr qint64 maximumPixels = qint64(16384) * 16384;

    TurboJpegDecoder();
    ~TurboJpegDecoder();
    TurboJpegDecoder(const TurboJpegDecoder &) = delete;
    TurboJpegDecoder &operator=(const TurboJpegDecoder &) = delete;

    // True when the data starts with a JPEG start-of-image marker (FF D8).
    static bool isJpeg(const QByteArray &data);
    // A null image when the data is not a decodable JPEG. Recoverable damage (a
    // truncated frame) still gives an image, as the generic decoders do.
    QImage decode(const QByteArray &data);

private:
    void *m_handle = nullptr;
};
