#pragma once

#include "TurboJpegDecoder.h"

#include <QByteArray>
#include <QImage>
#include <QString>

// Turns the bytes of one screen image into an image, trying in turn: TurboJPEG (data
// starting FF D8), Qt's general decoder, an image source that reads the first image it
// finds inside the data (stray bytes before it are skipped), and a round trip through the
// temporary file "zekt_preview.jpg". Every way of giving up logs one "ERROR" line.
class ScreenImageDecoder {
public:
    enum class Stage { turboJpeg, generalDecoder, imageSource, diskFallback, none };

    // A JPEG start-of-image marker one byte late (xx FF D8 ...) loses its first byte.
    static QByteArray repairPrefix(const QByteArray &data);
    // For data of two bytes or more that does not start with a JPEG start-of-image marker:
    // the offset of the first one among the first ten bytes (so at most 9), else 0.
    static qsizetype leadingGarbageLength(const QByteArray &data);
    // "Size: N bytes, Prefix: …, Suffix: …": the first 16 and last 8 bytes in upper-case
    // hexadecimal, for the lines that report an image that did not decode.
    static QString describeBytes(const QByteArray &data);
    static QString temporaryFilePath();

    // A null image when the image is to be dropped (the reason is already logged).
    QImage decode(const QByteArray &data);
    // TurboJPEG for data starting FF D8, else the first image Qt's reader finds in it: no
    // log line and no disk round trip. A null image when neither decodes.
    QImage decodeQuietly(const QByteArray &data);
    // Which stage produced the last decoded image.
    Stage lastStage() const { return m_lastStage; }

    // Tests switch stages off to reach the later ones.
    void setStageEnabledForTesting(Stage stage, bool enabled);

private:
    QImage decodeWithImageSource(const QByteArray &data, bool *dropped);
    QImage decodeThroughDisk(const QByteArray &data);
    bool isEnabled(Stage stage) const;

    TurboJpegDecoder m_turboJpeg;
    Stage m_lastStage = Stage::none;
    unsigned m_disabledStages = 0;
};
