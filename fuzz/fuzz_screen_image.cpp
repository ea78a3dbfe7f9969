// Feeds arbitrary bytes to the screen-image repairs and to the decoder the remote-control
// window uses on a frame it did not find decoded: TurboJPEG for JPEG data, else Qt's
// image reader.

#include "session/ScreenImageDecoder.h"

#include <QByteArray>
#include <QtGlobal>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // Qt's image plugins warn about every broken file; the fuzzer makes millions.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    static ScreenImageDecoder decoder;
    QByteArray repaired = ScreenImageDecoder::repairPrefix(bytes);
    const qsizetype garbage = ScreenImageDecoder::leadingGarbageLength(repaired);
    if (garbage < 0 || garbage > 9)
        __builtin_trap();
    repaired.remove(0, garbage);
    (void)ScreenImageDecoder::describeBytes(repaired);
    const QImage image = decoder.decodeQuietly(repaired);
    if (!image.isNull() && (image.width() <= 0 || image.height() <= 0))
        __builtin_trap();
    return 0;
}
