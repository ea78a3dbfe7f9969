#include "TurboJpegDecoder.h"

#include <turbojpeg.h>

TurboJpegDecoder::TurboJpegDecoder() : m_handle(tjInitDecompress()) {}

TurboJpegDecoder::~TurboJpegDecoder()
{
    if (m_handle)
        tjDestroy(m_handle);
}

bool TurboJpegDecoder::isJpeg(const QByteArray &data)
{
    return data.size() >= 2 && quint8(data[0]) == 0xFF && quint8(data[1]) == 0xD8;
}

QImage TurboJpegDecoder::decode(const QByteArray &data)
{
    if (!m_handle || !isJpeg(data))
        return {};
    auto *source = reinterpret_cast<const unsigned char *>(data.constData());
    const auto size = static_cast<unsigned long>(data.size());
    int width = 0, height = 0, subsampling = 0, colorspace = 0;
    if (tjDecompressHeader3(m_handle, source, size, &width, &height, &subsampling, &colorspace) !=
        0)
        return {};
    if (width <= 0 || height <= 0 || qint64(width) * height > maximumPixels)
        return {};
    // Qt's RGB32 pixel is the word 0xffRRGGBB: bytes B G R A on little-endian hosts, A R G B
    // on big-endian ones. TurboJPEG writes 0xFF into the alpha byte.
    QImage image(width, height, QImage::Format_RGB32);
    if (image.isNull())
        return {};
    const int pixelFormat = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? TJPF_BGRA : TJPF_ARGB;
    if (tjDecompress2(m_handle, source, size, image.bits(), width, int(image.bytesPerLine()),
                      height, pixelFormat, 0) != 0 &&
        tjGetErrorCode(m_handle) != TJERR_WARNING)
        return {};
    return image;
}
