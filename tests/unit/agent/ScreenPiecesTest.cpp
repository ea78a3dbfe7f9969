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
