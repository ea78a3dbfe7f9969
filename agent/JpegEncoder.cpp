#include "JpegEncoder.h"

#include <turbojpeg.h>

#include <algorithm>
#include <cmath>
#include <limits>

JpegEncoder::JpegEncoder() : m_handle(tjInitCompress()) {}

JpegEncoder::~JpegEncoder()
{
    release();
    if (m_handle)
        tjDestroy(m_handle);
}

void JpegEncoder::release()
{
    tjFree(m_buffer);
    m_buffer = nullptr;
    m_capacity = 0;
}

int JpegEncoder::turboQuality(float quality)
{
    if (!std::isfinite(quality))
        return 50;
    return std::clamp(int(std::lround(double(quality) * 100.0)), 1, 100);
}

QByteArrayView JpegEncoder::encode(const uchar *bgrx, int width, int height, int stride,
                                   float quality)
{
    if (!m_handle) {
        m_lastError = QStringLiteral("JPEG encoder could not be created");
        return {};
    }
    const unsigned long needed =
        bgrx && width > 0 && height > 0 ? tjBufSize(width, height, TJSAMP_420) : 0;
    if (!needed || needed == static_cast<unsigned long>(-1) || stride < width * 4 ||
        needed > unsigned(std::numeric_limits<int>::max())) {
        m_lastError = QStringLiteral("Invalid image for JPEG encoding");
        return {};
    }
    // The worst case for this size, so TurboJPEG never reallocates: only the pages a frame
    // really fills are ever touched.
    if (m_capacity < needed) {
        release();
        m_buffer = tjAlloc(int(needed));
        if (!m_buffer) {
            m_lastError = QStringLiteral("Out of memory for JPEG encoding");
            return {};
        }
        m_capacity = needed;
    }
    unsigned char *jpeg = m_buffer;
    unsigned long size = m_capacity;
    if (tjCompress2(m_handle, bgrx, width, stride, height, TJPF_BGRX, &jpeg, &size, TJSAMP_420,
                    turboQuality(quality), TJFLAG_FASTDCT | TJFLAG_NOREALLOC) != 0) {
        m_lastError = QStringLiteral("JPEG encoding failed: %1")
                          .arg(QString::fromLocal8Bit(tjGetErrorStr2(m_handle)));
        return {};
    }
    return QByteArrayView(reinterpret_cast<const char *>(jpeg), qsizetype(size));
}
