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
        encoder.encode(reinterpret_cast<const uchar *>(pixels.constData()), w, h, stride, 0.5f)
            .toByteArray();
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

TEST(FrameChangeTracker, EachStreamSeesEachVersionOnce)
{
    FrameChangeTracker tracker;
    EXPECT_TRUE(tracker.update(1, 7));
    EXPECT_FALSE(tracker.update(1, 7));
    EXPECT_TRUE(tracker.update(2, 7)); // streams are independent
    EXPECT_TRUE(tracker.update(1, 8));
    tracker.forget(1);
    EXPECT_TRUE(tracker.update(1, 8));
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

TEST(BandedJpegEncoder, ChangedBandsSeeEveryPixelButNotRowPadding)
{
    const int w = 203, h = 85, stride = w * 4 + 12; // the last band is 5 rows
    const QByteArray before = noiseImage(w, h, stride, 11);
    QByteArray now = before;
    auto changed = [&] {
        return BandedJpegEncoder::changedBands(reinterpret_cast<const uchar *>(now.constData()),
                                               reinterpret_cast<const uchar *>(before.constData()),
                                               w, h, stride);
    };
    const BandedJpegEncoder::BandMask none(6, false);
    EXPECT_EQ(BandedJpegEncoder::changedBands(reinterpret_cast<const uchar *>(now.constData()),
                                              nullptr, w, h, stride),
              BandedJpegEncoder::BandMask(6, true));
    EXPECT_EQ(changed(), none);

    now[10 * stride + w * 4 + 3] = '\x01'; // padding after a row's pixels
    EXPECT_EQ(changed(), none);

    now[47 * stride + w * 4 - 1] ^= 1; // the last byte of band 2
    now[80 * stride] ^= 1;             // the first byte of the short last band
    EXPECT_EQ(changed(), (BandedJpegEncoder::BandMask{false, false, true, false, false, true}));
}

TEST(BandedJpegEncoder, ReencodesOnlyChangedBandsAndMatchesAWholeEncode)
{
    BandedJpegEncoder::enableRestartMarkers();
    // Neither side a multiple of the block size, rows padded: the last band is 5 rows.
    const int w = 203, h = 85, stride = w * 4 + 12;
    QByteArray pixels = noiseImage(w, h, stride, 7);
    auto *bits = reinterpret_cast<uchar *>(pixels.data());
    BandedJpegEncoder banded;
    QByteArray previous; // the pixels of banded's last encode
    auto encode = [&](BandedJpegEncoder &encoder, float quality) {
        const auto *before = reinterpret_cast<const uchar *>(previous.constData());
        const QByteArray jpeg =
            encoder.encode(bits, w, h, stride, quality,
                           BandedJpegEncoder::changedBands(
                               bits, previous.isEmpty() ? nullptr : before, w, h, stride));
        previous = QByteArray(pixels.constData(), pixels.size());
        return jpeg;
    };
    auto expectSameAsFreshEncode = [&](const QByteArray &jpeg, float quality) {
        BandedJpegEncoder fresh;
        int w1 = 0, h1 = 0, w2 = 0, h2 = 0;
        const QByteArray expected =
            decodeJpeg(fresh.encode(bits, w, h, stride, quality,
                                    BandedJpegEncoder::changedBands(bits, nullptr, w, h, stride)),
                       w1, h1);
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
    const QByteArray plain = encoder.encode(bits, w, h, w * 4, 0.5f, {true, true, true});
    pixels.replace(0, 64, QByteArray(64, '\xFF'));
    const QByteArray changed = encoder.encode(bits, w, h, w * 4, 0.5f, {true, false, false});
    BandedJpegEncoder::enableRestartMarkers();
    EXPECT_EQ(encoder.lastBandsEncoded(), 3);
    int dw = 0, dh = 0;
    EXPECT_FALSE(decodeJpeg(plain, dw, dh).isEmpty());
    EXPECT_FALSE(decodeJpeg(changed, dw, dh).isEmpty());
    EXPECT_EQ(dh, h);
    EXPECT_NE(plain, changed);

    EXPECT_TRUE(encoder.encode(bits, w, h, w * 4, 0.5f, {true}).isEmpty()); // another image's bands
    EXPECT_FALSE(encoder.lastError().isEmpty());
}
