#include "BandedJpegEncoder.h"
#include "FrameChangeTracker.h"
#include "JpegEncoder.h"
#ifdef TELVANE_AGENT_X11
#include "X11InputProvider.h"
#endif

#include <QByteArray>
#include <gtest/gtest.h>
#include <turbojpeg.h>

TEST(JpegEncoder, QualityAndOutputFormat)
{
    EXPECT_EQ(JpegEncoder::turboQuality(0.5f), 50);
    EXPECT_EQ(JpegEncoder::turboQuality(0.824f), 82);
    EXPECT_EQ(JpegEncoder::turboQuality(0.0f), 1);
    EXPECT_EQ(JpegEncoder::turboQuality(7.0f), 100);
    EXPECT_EQ(JpegEncoder::turboQuality(std::numeric_limits<float>::quiet_NaN()), 50);

    const int w = 64, h = 32, stride = w * 4 + 16; // padded rows
    QByteArray pixels(stride * h, '\x80');
    JpegEncoder encoder;
    const QByteArray jpeg =
        encoder.encode(reinterpret_cast<const uchar *>(pixels.constData()), w, h, stride, 0.5f);
    ASSERT_GT(jpeg.size(), 100);
    tjhandle decoder = tjInitDecompress();
    int dw = 0, dh = 0, subsamp = -1, colorspace = -1;
    ASSERT_EQ(tjDecompressHeader3(decoder, reinterpret_cast<const uchar *>(jpeg.constData()),
                                  jpeg.size(), &dw, &dh, &subsamp, &colorspace),
              0);
    tjDestroy(decoder);
    EXPECT_EQ(dw, w);
    EXPECT_EQ(dh, h);
    EXPECT_EQ(subsamp, TJSAMP_420);

    EXPECT_TRUE(encoder.encode(reinterpret_cast<const uchar *>(pixels.constData()), w, h, w, 0.5f)
                    .isEmpty());
    EXPECT_FALSE(encoder.lastError().isEmpty());
}

TEST(FrameChangeTracker, OnlyChangedPixelsCountPerStream)
{
    QByteArray pixels(97 * 4 * 10, '\0'); // row length not a multiple of the lane width
    auto digest = [&] {
        return FrameChangeTracker::digest(reinterpret_cast<const uchar *>(pixels.constData()),
                                          97 * 4, 10, 97 * 4);
    };
    const quint64 first = digest();
    pixels[97 * 4 * 9 + 387] = 1; // last byte of the last row
    const quint64 second = digest();
    EXPECT_NE(first, second);

    FrameChangeTracker tracker;
    EXPECT_TRUE(tracker.update(1, first));
    EXPECT_FALSE(tracker.update(1, first));
    EXPECT_TRUE(tracker.update(2, first)); // streams are independent
    EXPECT_TRUE(tracker.update(1, second));
    tracker.forget(1);
    EXPECT_TRUE(tracker.update(1, second));
}

#ifdef TELVANE_AGENT_X11
TEST(X11InputProvider, ButtonsAndCoordinates)
{
    EXPECT_EQ(X11InputProvider::xButton(0), 1);
    EXPECT_EQ(X11InputProvider::xButton(1), 3);
    EXPECT_EQ(X11InputProvider::xButton(2), 2);
    EXPECT_EQ(X11InputProvider::xButton(3), 8); // 4–7 are the wheel
    EXPECT_EQ(X11InputProvider::xButton(4), 9);
    EXPECT_EQ(X11InputProvider::xButton(-1), 0);

    int x = 0, y = 0;
    X11InputProvider::toXPoint(100.5, 1000, 1920, 1080, x, y);
    EXPECT_EQ(x, 100);
    EXPECT_EQ(y, 80); // the wire's origin is at the bottom
    X11InputProvider::toXPoint(-5, -5, 1920, 1080, x, y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 1079);
    X11InputProvider::toXPoint(5000, 5000, 1920, 1080, x, y);
    EXPECT_EQ(x, 1919);
    EXPECT_EQ(y, 0);
    X11InputProvider::toXPoint(std::nan(""), std::numeric_limits<double>::infinity(), 10, 10, x, y);
    EXPECT_EQ(x, 0);
}
#endif

namespace {

// Decodes to BGRX, so tests compare pixels rather than bytes.
QByteArray decodeJpeg(const QByteArray &jpeg, int &width, int &height)
{
    tjhandle decoder = tjInitDecompress();
    int subsamp = 0, colorspace = 0;
    QByteArray pixels;
    const auto *data = reinterpret_cast<const uchar *>(jpeg.constData());
    if (tjDecompressHeader3(decoder, data, jpeg.size(), &width, &height, &subsamp, &colorspace) ==
        0) {
        pixels = QByteArray(width * height * 4, '\0');
        if (tjDecompress2(decoder, data, jpeg.size(), reinterpret_cast<uchar *>(pixels.data()),
                          width, width * 4, height, TJPF_BGRX, 0) != 0)
            pixels.clear();
    }
    tjDestroy(decoder);
    return pixels;
}

// Photo-like noise: every band compresses differently.
QByteArray noiseImage(int width, int height, int stride, quint32 seed)
{
    QByteArray pixels(stride * height, '\0');
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width * 4; ++x) {
            seed = seed * 1664525u + 1013904223u;
            pixels[y * stride + x] = char((x + y * 3 + int(seed >> 28)) & 0xFF);
        }
    return pixels;
}

} // namespace

TEST(BandedJpegEncoder, ReencodesOnlyChangedBandsAndMatchesAWholeEncode)
{
    BandedJpegEncoder::enableRestartMarkers();
    // Neither side a multiple of the block size, rows padded: the last band is 5 rows.
    const int w = 203, h = 85, stride = w * 4 + 12;
    QByteArray pixels = noiseImage(w, h, stride, 7);
    auto *bits = reinterpret_cast<uchar *>(pixels.data());
    BandedJpegEncoder banded;
    auto encode = [&](BandedJpegEncoder &encoder, float quality) {
        return encoder.encode(bits, w, h, stride, quality,
                              BandedJpegEncoder::digest(bits, w, h, stride));
    };
    auto expectSameAsFreshEncode = [&](const QByteArray &jpeg, float quality) {
        BandedJpegEncoder fresh;
        int w1 = 0, h1 = 0, w2 = 0, h2 = 0;
        const QByteArray expected = decodeJpeg(encode(fresh, quality), w1, h1);
        const QByteArray actual = decodeJpeg(jpeg, w2, h2);
        ASSERT_FALSE(actual.isEmpty());
        EXPECT_EQ(w2, w);
        EXPECT_EQ(h2, h);
        EXPECT_TRUE(actual == expected);
    };

    const QByteArray first = encode(banded, 0.5f);
    EXPECT_EQ(banded.lastBandsEncoded(), 6);
    expectSameAsFreshEncode(first, 0.5f);

    // One pixel in band 1 and one in the short last band: two separate runs.
    pixels[20 * stride + 40] = char(pixels[20 * stride + 40] ^ 0x80);
    pixels[84 * stride + 800] = char(pixels[84 * stride + 800] ^ 0x80);
    const QByteArray second = encode(banded, 0.5f);
    EXPECT_EQ(banded.lastBandsEncoded(), 2);
    EXPECT_NE(second, first);
    expectSameAsFreshEncode(second, 0.5f);

    // Three adjacent bands in one run.
    for (int y = 16; y < 64; y += 8)
        pixels[y * stride + 4] = char(pixels[y * stride + 4] ^ 0x40);
    expectSameAsFreshEncode(encode(banded, 0.5f), 0.5f);
    EXPECT_EQ(banded.lastBandsEncoded(), 3);

    // Unchanged: nothing re-encoded, the same bytes again.
    EXPECT_EQ(encode(banded, 0.5f), encode(banded, 0.5f));
    EXPECT_EQ(banded.lastBandsEncoded(), 0);

    // Another quality changes every band's coding.
    expectSameAsFreshEncode(encode(banded, 0.8f), 0.8f);
    EXPECT_EQ(banded.lastBandsEncoded(), 6);
}

TEST(BandedJpegEncoder, WithoutRestartMarkersEncodesWholeFrames)
{
    const int w = 64, h = 48;
    QByteArray pixels = noiseImage(w, h, w * 4, 3);
    const auto *bits = reinterpret_cast<const uchar *>(pixels.constData());
    BandedJpegEncoder encoder;
    unsetenv("TJ_RESTART");
    const QByteArray plain =
        encoder.encode(bits, w, h, w * 4, 0.5f, BandedJpegEncoder::digest(bits, w, h, w * 4));
    pixels.replace(0, 64, QByteArray(64, '\xFF'));
    const QByteArray changed =
        encoder.encode(bits, w, h, w * 4, 0.5f, BandedJpegEncoder::digest(bits, w, h, w * 4));
    BandedJpegEncoder::enableRestartMarkers();
    EXPECT_EQ(encoder.lastBandsEncoded(), 3);
    int dw = 0, dh = 0;
    EXPECT_FALSE(decodeJpeg(plain, dw, dh).isEmpty());
    EXPECT_FALSE(decodeJpeg(changed, dw, dh).isEmpty());
    EXPECT_EQ(dh, h);
    EXPECT_NE(plain, changed);

    EXPECT_TRUE(encoder.encode(bits, w, h, w * 4, 0.5f, {}).isEmpty()); // digests of another image
    EXPECT_FALSE(encoder.lastError().isEmpty());
}
