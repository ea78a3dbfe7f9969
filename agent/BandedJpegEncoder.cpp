#include "BandedJpegEncoder.h"

#include "FrameChangeTracker.h"

#include <cstdlib>
#include <cstring>

namespace {

// Where the pieces of one of our own encoder's JPEGs lie.
struct JpegLayout {
    qsizetype headerEnd = 0;                                // first byte after the scan header
    QByteArray tables;                                      // every DQT and DHT segment, in order
    std::vector<std::pair<qsizetype, qsizetype>> intervals; // entropy bytes: offset, length
};

int readBigEndian16(const uchar *p)
{
    return (int(p[0]) << 8) | int(p[1]);
}

bool parseJpeg(const QByteArray &jpeg, JpegLayout &layout)
{
    const auto *data = reinterpret_cast<const uchar *>(jpeg.constData());
    const qsizetype size = jpeg.size();
    if (size < 4 || data[0] != 0xFF || data[1] != 0xD8)
        return false;
    qsizetype pos = 2;
    for (;;) {
        if (pos + 4 > size || data[pos] != 0xFF)
            return false;
        const uchar marker = data[pos + 1];
        const qsizetype end = pos + 2 + readBigEndian16(data + pos + 2);
        if (end > size)
            return false;
        if (marker == 0xDB || marker == 0xC4)
            layout.tables.append(jpeg.constData() + pos, end - pos);
        pos = end;
        if (marker == 0xDA)
            break;
    }
    layout.headerEnd = pos;
    qsizetype start = pos;
    while (pos + 1 < size) {
        const void *ff = std::memchr(data + pos, 0xFF, size_t(size - pos - 1));
        if (!ff)
            return false;
        pos = static_cast<const uchar *>(ff) - data;
        const uchar next = data[pos + 1];
        if (next == 0x00) { // a stuffed 0xFF data byte
            pos += 2;
            continue;
        }
        if (next >= 0xD0 && next <= 0xD7) {
            layout.intervals.emplace_back(start, pos - start);
            pos += 2;
            start = pos;
            continue;
        }
        if (next != 0xD9)
            return false;
        layout.intervals.emplace_back(start, pos - start);
        return true;
    }
    return false;
}

} // namespace

void BandedJpegEncoder::enableRestartMarkers()
{
    // "1" is one restart interval per block row.
    setenv("TJ_RESTART", "1", 1);
}

BandedJpegEncoder::BandDigests BandedJpegEncoder::digest(const uchar *bgrx, int width, int height,
                                                         int stride)
{
    BandDigests digests;
    if (!bgrx || width <= 0 || height <= 0)
        return digests;
    constexpr quint64 prime = 0x9E3779B97F4A7C15ull;
    quint64 frame = quint64(width) << 32 | quint64(height);
    for (int y = 0; y < height; y += bandHeight) {
        const quint64 band = FrameChangeTracker::digest(bgrx + qsizetype(y) * stride, width * 4,
                                                        qMin(bandHeight, height - y), stride);
        digests.bands.push_back(band);
        frame = ((frame << 23) | (frame >> 41)) ^ band;
        frame *= prime;
    }
    digests.frame = frame ^ (frame >> 29);
    return digests;
}

void BandedJpegEncoder::clear()
{
    m_header.clear();
    m_tables.clear();
    m_bands.clear();
    m_width = m_height = m_quality = 0;
}

bool BandedJpegEncoder::encodeRun(const uchar *bgrx, int width, int height, int stride,
                                  float quality, int firstBand, int bandCount)
{
    const int top = firstBand * bandHeight;
    const int rows = qMin(bandCount * bandHeight, height - top);
    const QByteArray jpeg =
        m_encoder.encode(bgrx + qsizetype(top) * stride, width, rows, stride, quality);
    if (jpeg.isEmpty()) {
        m_lastError = m_encoder.lastError();
        return false;
    }
    JpegLayout layout;
    const bool whole = firstBand == 0 && bandCount == int(m_bands.size());
    // A band count that does not match means restart markers are off: splicing is
    // impossible, but a whole frame is still a good JPEG.
    if (!parseJpeg(jpeg, layout) || int(layout.intervals.size()) != bandCount ||
        (!whole && layout.tables != m_tables)) {
        if (whole) {
            m_header = jpeg; // served as is by splice() while no band is kept
            m_tables.clear();
            for (Band &band : m_bands)
                band = {};
        }
        return whole;
    }
    if (whole) {
        m_header = jpeg.left(layout.headerEnd);
        m_tables = layout.tables;
    }
    for (int i = 0; i < bandCount; ++i) {
        const auto [offset, length] = layout.intervals[size_t(i)];
        m_bands[size_t(firstBand + i)].entropy = jpeg.mid(offset, length);
    }
    return true;
}

QByteArray BandedJpegEncoder::splice() const
{
    if (m_tables.isEmpty()) // unspliceable whole frame
        return m_header;
    qsizetype total = m_header.size() + 2 * qsizetype(m_bands.size());
    for (const Band &band : m_bands)
        total += band.entropy.size();
    QByteArray jpeg;
    jpeg.reserve(total);
    jpeg.append(m_header);
    for (size_t i = 0; i < m_bands.size(); ++i) {
        jpeg.append(m_bands[i].entropy);
        const char marker[2] = {'\xFF', char(i + 1 == m_bands.size() ? 0xD9 : 0xD0 + (i & 7))};
        jpeg.append(marker, 2);
    }
    return jpeg;
}

QByteArray BandedJpegEncoder::encode(const uchar *bgrx, int width, int height, int stride,
                                     float quality, const BandDigests &digests)
{
    const int turbo = JpegEncoder::turboQuality(quality);
    if (!bgrx || width <= 0 || height <= 0 || stride < width * 4 ||
        digests.bands.size() != size_t((height + bandHeight - 1) / bandHeight)) {
        m_lastError = QStringLiteral("Invalid image for JPEG encoding");
        return {};
    }
    const int bandCount = int(digests.bands.size());
    const bool reusable = !m_header.isEmpty() && !m_tables.isEmpty() && width == m_width &&
                          height == m_height && turbo == m_quality;
    if (!reusable) {
        clear();
        m_bands.resize(size_t(bandCount));
        m_width = width;
        m_height = height;
        m_quality = turbo;
    }

    m_lastBandsEncoded = 0;
    bool ok = true;
    if (reusable) {
        // Re-encode each run of changed bands with one call.
        for (int band = 0; band < bandCount && ok;) {
            if (m_bands[size_t(band)].digest == digests.bands[size_t(band)]) {
                ++band;
                continue;
            }
            int end = band + 1;
            while (end < bandCount && m_bands[size_t(end)].digest != digests.bands[size_t(end)])
                ++end;
            ok = encodeRun(bgrx, width, height, stride, quality, band, end - band);
            m_lastBandsEncoded += end - band;
            band = end;
        }
    }
    if (!reusable || !ok) {
        m_lastBandsEncoded = bandCount;
        if (!encodeRun(bgrx, width, height, stride, quality, 0, bandCount)) {
            clear();
            return {};
        }
    }
    for (int i = 0; i < bandCount; ++i)
        m_bands[size_t(i)].digest = digests.bands[size_t(i)];
    return splice();
}
