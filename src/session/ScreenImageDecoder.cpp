#include "ScreenImageDecoder.h"

#include "model/LogManager.h"
#include "posix/PrivateFiles.h"

#include <QBuffer>
#include <QDir>
#include <QImageReader>

namespace {

void logError(const QString &message)
{
    LogManager::shared().log(message, QStringLiteral("ERROR"));
}

QString hexBytes(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

// Offsets where an image container starts: 0 first, then every later JPEG or PNG start.
QList<qsizetype> imageStarts(const QByteArray &data)
{
    static const QByteArray jpegStart("\xFF\xD8\xFF", 3);
    static const QByteArray pngStart("\x89PNG\r\n\x1A\n", 8);
    QList<qsizetype> starts{0};
    for (const QByteArray &signature : {jpegStart, pngStart}) {
        for (qsizetype at = data.indexOf(signature, 1); at > 0;
             at = data.indexOf(signature, at + 1)) {
            starts.append(at);
            if (starts.size() > 8)
                break;
        }
    }
    std::sort(starts.begin(), starts.end());
    return starts;
}

} // namespace

QByteArray ScreenImageDecoder::repairPrefix(const QByteArray &data)
{
    if (data.size() >= 3 && quint8(data[1]) == 0xFF && quint8(data[2]) == 0xD8)
        return data.mid(1);
    return data;
}

qsizetype ScreenImageDecoder::leadingGarbageLength(const QByteArray &data)
{
    if (data.size() < 2 || TurboJpegDecoder::isJpeg(data))
        return 0;
    const qsizetype end = std::min<qsizetype>(data.size() - 1, 10);
    for (qsizetype i = 1; i < end; ++i) {
        if (quint8(data[i]) == 0xFF && quint8(data[i + 1]) == 0xD8)
            return i;
    }
    return 0;
}

QString ScreenImageDecoder::describeBytes(const QByteArray &data)
{
    return QStringLiteral("Size: ") + QString::number(data.size()) +
           QStringLiteral(" bytes, Prefix: ") + hexBytes(data.left(16)) +
           QStringLiteral(", Suffix: ") + hexBytes(data.right(8));
}

QString ScreenImageDecoder::temporaryFilePath()
{
    return QDir(QDir::tempPath()).filePath(QStringLiteral("zekt_preview.jpg"));
}

void ScreenImageDecoder::setStageEnabledForTesting(Stage stage, bool enabled)
{
    const unsigned bit = 1u << unsigned(stage);
    m_disabledStages = enabled ? (m_disabledStages & ~bit) : (m_disabledStages | bit);
}

bool ScreenImageDecoder::isEnabled(Stage stage) const
{
    return (m_disabledStages & (1u << unsigned(stage))) == 0;
}

QImage ScreenImageDecoder::decode(const QByteArray &data)
{
    m_lastStage = Stage::none;
    if (isEnabled(Stage::turboJpeg) && TurboJpegDecoder::isJpeg(data)) {
        QImage image = m_turboJpeg.decode(data);
        if (!image.isNull()) {
            m_lastStage = Stage::turboJpeg;
            return image;
        }
    }
    if (isEnabled(Stage::generalDecoder)) {
        QImage image = QImage::fromData(data);
        if (!image.isNull()) {
            m_lastStage = Stage::generalDecoder;
            return image;
        }
    }
    if (isEnabled(Stage::imageSource)) {
        bool dropped = false;
        QImage image = decodeWithImageSource(data, &dropped);
        if (dropped)
            return {};
        if (!image.isNull()) {
            m_lastStage = Stage::imageSource;
            return image;
        }
    }
    logError(QStringLiteral("Failed to create NSImage from screen capture data. ") +
             describeBytes(data));
    if (!isEnabled(Stage::diskFallback))
        return {};
    QImage image = decodeThroughDisk(data);
    if (!image.isNull())
        m_lastStage = Stage::diskFallback;
    return image;
}

QImage ScreenImageDecoder::decodeQuietly(const QByteArray &data)
{
    if (TurboJpegDecoder::isJpeg(data)) {
        if (QImage image = m_turboJpeg.decode(data); !image.isNull())
            return image;
    }
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader(&buffer).read();
}

QImage ScreenImageDecoder::decodeWithImageSource(const QByteArray &data, bool *dropped)
{
    for (const qsizetype start : imageStarts(data)) {
        QByteArray view = QByteArray::fromRawData(data.constData() + start, data.size() - start);
        QBuffer buffer(&view);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer);
        if (!reader.canRead())
            continue;
        const QImage first = reader.read();
        if (first.isNull())
            continue;
        // The first image as a plain bitmap of its own pixel size, detached from the data.
        QImage bitmap = first.convertToFormat(
            first.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        if (bitmap.isNull() || bitmap.size() != first.size()) {
            logError(QStringLiteral("Failed to obtain full image for thumbnail creation"));
            *dropped = true;
            return {};
        }
        return bitmap;
    }
    return {};
}

QImage ScreenImageDecoder::decodeThroughDisk(const QByteArray &data)
{
    const QString path = temporaryFilePath();
    // A screen image: in the shared temporary folder it must be the user's alone.
    if (const auto error = PrivateFiles::write(path, data)) {
        logError(QStringLiteral("Failed to write preview image to disk: ") + *error);
        return {};
    }
    QImage image(path);
    if (image.isNull()) {
        logError(QStringLiteral("Failed to create NSImage even from disk fallback"));
        return {};
    }
    LogManager::shared().log(QStringLiteral("Successfully loaded image from disk fallback"),
                             QStringLiteral("SCREEN"));
    return image;
}
