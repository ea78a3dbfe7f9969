#include "JpegEncoder.h"

#include <turbojpeg.h>

#include <algorithm>
#include <cmath>

JpegEncoder::JpegEncoder() : m_handle(tjInitCompress()) {}

JpegEncoder::~JpegEncoder()
{
    if (m_handle)
        tjDestroy(m_handle);
}

int JpegEncoder::turboQuality(float quality)
{
    if (!std::isfinite(quality))
        return 50;
    return std::clamp(int(std::lround(double(quality) * 100.0)), 1, 100);
}

QByteArray JpegEncoder::encode(const uchar *bgrx, int width, int height, int stride, float quality)
{
    if (!m_handle) {
        m_lastError = QStringLiteral("JPEG encoder could not be created");
        return {};
    }
    if (!bgrx || width <= 0 || height <= 0 || stride < width * 4) {
        m_lastError = QStringLiteral("Invalid image for JPEG encoding");
        return {};
    }
    unsigned char *jpeg = nullptr;
    unsigned long size = 0;
    const int result = tjCompress2(m_handle, bgrx, width, stride, height, TJPF_BGRX, &jpeg, &size,
                                   TJSAMP_420, turboQuality(quality), TJFLAG_FASTDCT);
    QByteArray out;
    if (result == 0)
        out = QByteArray(reinterpret_cast<const char *>(jpeg), qsizetype(size));
    else
        m_lastError = QStringLiteral("JPEG encoding failed: %1")
                          .arg(QString::fromLocal8Bit(tjGetErrorStr2(m_handle)));
    tjFree(jpeg);
    return out;
}
