// Screen images: acceptance, prefix repair, the decoder chain, thumbnails and broadcast.
#include "SessionHarness.h"

#include "platform/NotificationHub.h"
#include "protocol/ScreenCaptureMessage.h"
#include "session/DecodedFrameCache.h"

#include <QFile>
#include <QSignalSpy>
#include <cmath>

namespace {

std::shared_ptr<ScreenCaptureMessage> capture(const QByteArray &data)
{
    return std::make_shared<ScreenCaptureMessage>(0, data, QStringLiteral("jpeg"), 0.5f, 1,
                                                  std::nullopt, 1920, 1080);
}

QSize thumbnailSize(const QByteArray &bytes)
{
    return QImage::fromData(bytes).size();
}

} // namespace

class ScreenPipelineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void prefixRepair()
    {
        const QByteArray late("\x00\xFF\xD8\xFF\xE0", 5);
        QCOMPARE(ScreenImageDecoder::repairPrefix(late), late.mid(1));
        QCOMPARE(ScreenImageDecoder::repairPrefix(late.mid(1)), late.mid(1));
        QCOMPARE(ScreenImageDecoder::repairPrefix(QByteArray("\xFF\xD8", 2)),
                 QByteArray("\xFF\xD8", 2));
    }

    void leadingGarbage_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<qsizetype>("length");
        const QByteArray soi("\xFF\xD8\xFF", 3);
        QTest::newRow("starts with the marker") << soi << qsizetype(0);
        QTest::newRow("three bytes late") << QByteArray(3, 'x') + soi << qsizetype(3);
        QTest::newRow("nine bytes late") << QByteArray(9, 'x') + soi << qsizetype(9);
        QTest::newRow("ten bytes late") << QByteArray(10, 'x') + soi << qsizetype(0);
        QTest::newRow("marker cut after FF") << QByteArray("xx\xFF", 3) << qsizetype(0);
        QTest::newRow("one byte") << QByteArray(1, '\xFF') << qsizetype(0);
        QTest::newRow("no marker") << QByteArray(40, '\x07') << qsizetype(0);
    }
    void leadingGarbage()
    {
        QFETCH(QByteArray, data);
        QFETCH(qsizetype, length);
        QCOMPARE(ScreenImageDecoder::leadingGarbageLength(data), length);
    }

    void quietDecodeNeitherLogsNorTouchesTheDisk()
    {
        ScreenImageDecoder decoder;
        QFile::remove(ScreenImageDecoder::temporaryFilePath());
        LogLines::clear();
        const QByteArray jpeg = encodedImage(64, 48, "JPEG");
        QCOMPARE(decoder.decodeQuietly(jpeg).size(), QSize(64, 48));
        QCOMPARE(decoder.decodeQuietly(encodedImage(64, 48, "PNG")).size(), QSize(64, 48));
        // A frame cut short still shows what arrived, as in the pipeline.
        QCOMPARE(decoder.decodeQuietly(jpeg.left(jpeg.size() - 8)).size(), QSize(64, 48));
        QVERIFY(decoder.decodeQuietly(QByteArray(32, '\x07')).isNull());
        QVERIFY(decoder.decodeQuietly(QByteArray()).isNull());
        QVERIFY(LogLines::all().isEmpty());
        QVERIFY(!QFile::exists(ScreenImageDecoder::temporaryFilePath()));
    }

    void thumbnailGeometry()
    {
        Thumbnailer thumbnailer;
        const QList<QPair<QSize, QSize>> cases{
            {{1920, 1080}, {640, 360}}, {{1080, 1920}, {360, 640}}, {{500, 500}, {640, 640}}};
        for (const auto &[source, expected] : cases) {
            QImage image(source, QImage::Format_RGB32);
            image.fill(QColor(200, 40, 10));
            const QByteArray jpeg = thumbnailer.createThumbnail(image, 640);
            QVERIFY(jpeg.startsWith("\xFF\xD8"));
            QCOMPARE(thumbnailSize(jpeg), expected);
            // Channels stay in place through the shrinking and the encoder.
            const QColor centre = QImage::fromData(jpeg).pixelColor(expected.width() / 2, 10);
            QVERIFY(qAbs(centre.red() - 200) < 6 && qAbs(centre.blue() - 10) < 6);
        }
        // The fast shrinking paths agree with Qt's smooth scaler on a busy picture.
        QImage busy(1920, 1080, QImage::Format_RGB32);
        for (int y = 0; y < busy.height(); ++y)
            for (int x = 0; x < busy.width(); ++x)
                busy.setPixel(x, y,
                              qRgb(128 + 100 * std::sin(x / 5.0), 128 + 100 * std::cos(y / 5.0),
                                   128 + 100 * std::sin((x + y) / 7.0)));
        const QImage fast = Thumbnailer::scale(busy, 640, 360);
        const QImage reference =
            busy.scaled(640, 360, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        int worst = 0;
        for (int y = 0; y < 360; ++y)
            for (int x = 0; x < 640; ++x)
                for (const int shift : {0, 8, 16})
                    worst = qMax(worst, qAbs(int(fast.pixel(x, y) >> shift & 0xFF) -
                                             int(reference.pixel(x, y) >> shift & 0xFF)));
        QVERIFY2(worst <= 8, qPrintable(QString::number(worst)));

        LogLines::clear();
        QVERIFY(thumbnailer.createThumbnail(QImage(), 640).isEmpty());
        QCOMPARE(LogLines::count("ERROR", "Invalid image size: 0x0"), 1);

        thumbnailer.setJpegEncoderForTesting([](const QImage &) { return QByteArray(); });
        QImage image(1920, 1080, QImage::Format_RGB32);
        image.fill(Qt::black);
        QVERIFY(thumbnailer.createThumbnail(image, 640).startsWith("\x89PNG"));
        QCOMPARE(LogLines::count("WARN", "Failed to create JPEG thumbnail, trying PNG fallback"),
                 1);
    }

    void decoderChainReachesEveryStage()
    {
        using Stage = ScreenImageDecoder::Stage;
        ScreenImageDecoder decoder;
        QVERIFY(!decoder.decode(encodedImage(64, 48, "JPEG")).isNull());
        QCOMPARE(decoder.lastStage(), Stage::turboJpeg);
        QVERIFY(!decoder.decode(encodedImage(64, 48, "PNG")).isNull());
        QCOMPARE(decoder.lastStage(), Stage::generalDecoder);
        // Stray bytes before the image defeat the general decoder, not the image source.
        QCOMPARE(decoder.decode("garbage" + encodedImage(64, 48, "PNG")).size(), QSize(64, 48));
        QCOMPARE(decoder.lastStage(), Stage::imageSource);

        LogLines::clear();
        decoder.setStageEnabledForTesting(Stage::turboJpeg, false);
        decoder.setStageEnabledForTesting(Stage::generalDecoder, false);
        decoder.setStageEnabledForTesting(Stage::imageSource, false);
        QVERIFY(!decoder.decode(encodedImage(64, 48, "JPEG")).isNull());
        QCOMPARE(decoder.lastStage(), Stage::diskFallback);
        QVERIFY(QFile::exists(ScreenImageDecoder::temporaryFilePath()));
        QCOMPARE(LogLines::count("SCREEN", "Successfully loaded image from disk fallback"), 1);

        decoder.setStageEnabledForTesting(Stage::generalDecoder, true);
        decoder.setStageEnabledForTesting(Stage::imageSource, true);
        LogLines::clear();
        const QByteArray junk = QByteArray(20, '\x01') + QByteArray(4, '\xAB');
        QVERIFY(decoder.decode(junk).isNull());
        QCOMPARE(LogLines::count("ERROR", "Failed to create NSImage from screen capture data. "
                                          "Size: 24 bytes, Prefix: 01 01 01 01 01 01 01 01 01 "
                                          "01 01 01 01 01 01 01, Suffix: 01 01 01 01 AB AB AB AB"),
                 1);
        QCOMPARE(LogLines::count("ERROR", "Failed to create NSImage even from disk fallback"), 1);
        QVERIFY(decoder.decode(QByteArray()).isNull());
    }

    void previewAndBroadcast()
    {
        SessionHarness h;
        QVERIFY(h.connect());
        QSignalSpy posted(&NotificationHub::shared(), &NotificationHub::notificationPosted);
        const QByteArray jpeg = encodedImage(1920, 1080, "JPEG");

        // Neither streaming nor waiting for a preview: dropped before decoding.
        h.fake().sendMessage(capture(jpeg));
        QTRY_COMPARE(LogLines::count("SCREEN", "Ignoring screen capture for Studio - no active "
                                               "streaming or manual preview request"),
                     1);

        h.manager->requestManualPreview(h.computer);
        h.manager->startRemoteControlStreaming(h.computer, 10);
        h.fake().sendMessage(capture(QByteArray(1, '\0') + jpeg)); // one byte late
        QTRY_VERIFY(h.record().thumbnailImage.has_value());
        QCOMPARE(thumbnailSize(*h.record().thumbnailImage), QSize(640, 360));
        QTRY_COMPARE(posted.size(), 1);
        const QVariantMap info = posted[0][1].toMap();
        QCOMPARE(posted[0][0].toString(), QStringLiteral("screenCaptureReceived"));
        QCOMPARE(info.size(), 6);
        QCOMPARE(info["computerID"].toUuid(), h.computer.id);
        QCOMPARE(info["imageData"].toByteArray(), jpeg);
        QCOMPARE(info["displayWidth"].toUInt(), 1920u);
        QCOMPARE(info["quality"].toFloat(), 0.5f);
        // The window finds the decoded frame for exactly these bytes.
        QCOMPARE(
            DecodedFrameCache::shared().find(h.computer.id, info["imageData"].toByteArray()).size(),
            QSize(1920, 1080));
        QVERIFY(DecodedFrameCache::shared().find(h.computer.id, QByteArray(jpeg)).isNull());

        // The preview was satisfied once; the stream goes on.
        h.fake().sendMessage(capture(jpeg));
        QTRY_COMPARE(posted.size(), 2);
        QCOMPARE(LogLines::count("SCREEN", "Screen capture received for Studio - streaming only, "
                                           "no preview update"),
                 1);
        QCOMPARE(LogLines::countStartingWith("Updated manual preview thumbnail for Studio ("), 1);

        // An undecodable image keeps the preview pending and is not broadcast.
        h.manager->requestManualPreview(h.computer);
        h.fake().sendMessage(capture(QByteArray(32, '\x07')));
        QTest::qWait(30);
        QCOMPARE(posted.size(), 2);
        QVERIFY(h.manager->isManualPreviewRequested(h.computer.id));
        h.manager->stopRemoteControlStreaming(h.computer);
        QVERIFY(DecodedFrameCache::shared().find(h.computer.id, jpeg).isNull());
    }
};

QTEST_MAIN(ScreenPipelineTest)
#include "ScreenPipelineTest.moc"
