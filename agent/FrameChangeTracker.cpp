#include "FrameChangeTracker.h"

#include <cstring>

quint64 FrameChangeTracker::digest(const uchar *pixels, int rowBytes, int rows, int stride)
{
    // Four independent multiply-rotate lanes over 8-byte words: memory bound, not
    // compute bound, and any single changed byte changes the result.
    constexpr quint64 prime = 0x9E3779B97F4A7C15ull;
    quint64 lanes[4] = {1, 2, 3, 4};
    for (int y = 0; y < rows; ++y) {
        const uchar *row = pixels + qsizetype(y) * stride;
        int x = 0;
        for (; x + 32 <= rowBytes; x += 32) {
            for (int lane = 0; lane < 4; ++lane) {
                quint64 word;
                std::memcpy(&word, row + x + lane * 8, 8);
                lanes[lane] = ((lanes[lane] ^ word) * prime);
                lanes[lane] = (lanes[lane] << 31) | (lanes[lane] >> 33);
            }
        }
        for (; x < rowBytes; ++x)
            lanes[0] = (lanes[0] ^ row[x]) * prime;
        lanes[1] ^= quint64(y) * prime; // rows moved up or down change the digest
    }
    quint64 h = lanes[0];
    for (int lane = 1; lane < 4; ++lane)
        h = (h ^ lanes[lane]) * prime + quint64(lane);
    return h ^ (h >> 29);
}

bool FrameChangeTracker::update(quintptr streamKey, quint64 digest)
{
    QMutexLocker lock(&m_mutex);
    const auto it = m_lastDigest.constFind(streamKey);
    if (it != m_lastDigest.constEnd() && it.value() == digest)
        return false;
    m_lastDigest.insert(streamKey, digest);
    return true;
}

void FrameChangeTracker::forget(quintptr streamKey)
{
    QMutexLocker lock(&m_mutex);
    m_lastDigest.remove(streamKey);
}
