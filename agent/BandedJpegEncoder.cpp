#include "BandedJpegEncoder.h"

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

bool parseJpeg(QByteArrayView jpeg, JpegLayout &layout)
{
    const auto *data = reinterpret_cast<const uchar *>(jpeg.data());
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
            layout.tables.append(jpeg.data() + pos, end - pos);
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

BandedJpegEncoder::BandMask BandedJpegEncoder::changedBands(const uchar *now, const uchar *before,
                                                            int width, int height, int stride)
{
    BandMask changed(size_t(bandCount(height)), true);
    if (!now || !before || width <= 0 || stride < width * 4)
        return changed;
    const size_t rowBytes = size_t(width) * 4;
    for (size_t band = 0; band < changed.size(); ++band) {
        const int top = int(band) * bandHeight;
        const int bottom = qMin(top + bandHeight, height);
        bool same = true;
        for (int y = top; y < bottom && same; ++y) {
            const qsizetype offset = qsizetype(y) * stride;
            same = std::memcmp(now + offset, before + offset, rowBytes) == 0;
        }
        changed[band] = !same;
    }
    return changed;
}

void BandedJpegEncoder::clear()
{
    m_header.clear();
    m_tables.clear();
    m_bands.clear();
    m_width = m_height = m_quality = 0;
}

void BandedJpegEncoder::releaseMemory()
{
    clear();
    m_encoder.release();
}

bool BandedJpegEncoder::encodeRun(const uchar *bgrx, int width, int height, int stride,
                                  float quality, int firstBand, int count)
{
    const int top = firstBand * bandHeight;
    const int rows = qMin(count * bandHeight, height - top);
    // Points into the encoder's buffer: only the pieces kept are copied out.
    const QByteArrayView jpeg =
        m_encoder.encode(bgrx + qsizetype(top) * stride, width, rows, stride, quality);
    if (jpeg.isEmpty()) {
        m_lastError = m_encoder.lastError();
        return false;
    }
    JpegLayout layout;
    const bool whole = firstBand == 0 && count == int(m_bands.size());
    // A band count that does not match means restart markers are off: splicing is
    // impossible, but a whole frame is still a good JPEG.
    if (!parseJpeg(jpeg, layout) || int(layout.intervals.size()) != count ||
        (!whole && layout.tables != m_tables)) {
        if (whole) {
            m_header = jpeg.toByteArray(); // served as is by splice() while no band is kept
            m_tables.clear();
            for (QByteArray &band : m_bands)
                band.clear();
        }
        return whole;
    }
    if (whole) {
        m_header = jpeg.first(layout.headerEnd).toByteArray();
        m_tables = layout.tables;
    }
    for (int i = 0; i < count; ++i) {
        const auto [offset, length] = layout.intervals[size_t(i)];
        m_bands[size_t(firstBand + i)] = jpeg.sliced(offset, length).toByteArray();
    }
    return true;
}

QByteArray BandedJpegEncoder::splice() const
{
    if (m_tables.isEmpty()) // unspliceable whole frame
        return m_header;
    qsizetype total = m_header.size() + 2 * qsizetype(m_bands.size());
    for (const QByteArray &band : m_bands)
        total += band.size();
    QByteArray jpeg;
    jpeg.reserve(total);
    jpeg.append(m_header);
    for (size_t i = 0; i < m_bands.size(); ++i) {
        jpeg.append(m_bands[i]);
        const char marker[2] = {'\xFF', char(i + 1 == m_bands.size() ? 0xD9 : 0xD0 + (i & 7))};
        jpeg.append(marker, 2);
    }
    return jpeg;
}

QByteArray BandedJpegEncoder::encode(const uchar *bgrx, int width, int height, int stride,
                                     float quality, const BandMask &changed)
{
    const int turbo = JpegEncoder::turboQuality(quality);
    if (!bgrx || width <= 0 || height <= 0 || stride < width * 4 ||
        changed.size() != size_t(bandCount(height))) {
        m_lastError = QStringLiteral("Invalid image for JPEG encoding");
        return {};
    }
    const int bands = int(changed.size());
    const bool reusable = !m_header.isEmpty() && !m_tables.isEmpty() && width == m_width &&
                          height == m_height && turbo == m_quality;
    if (!reusable) {
        clear();
        m_bands.resize(size_t(bands));
        m_width = width;
        m_height = height;
        m_quality = turbo;
    }

    m_lastBandsEncoded = 0;
    bool ok = true;
    if (reusable) {
        // Re-encode each run of changed bands with one call.
        for (int band = 0; band < bands && ok;) {
            if (!changed[size_t(band)]) {
                ++band;
                continue;
            }
            int end = band + 1;
            while (end < bands && changed[size_t(end)])
                ++end;
            ok = encodeRun(bgrx, width, height, stride, quality, band, end - band);
            m_lastBandsEncoded += end - band;
            band = end;
        }
    }
    if (!reusable || !ok) {
        m_lastBandsEncoded = bands;
        if (!encodeRun(bgrx, width, height, stride, quality, 0, bands)) {
            clear();
            return {};
        }
    }
    return splice();
}
