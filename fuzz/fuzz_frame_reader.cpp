// Feeds arbitrary bytes, split at arbitrary points, to the frame reader and decodes every
// frame it yields both ways, as a session would.

#include "ZEKTFrameReader.h"
#include "ZEKTMessageCodec.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    // The first byte picks the limit and the piece size, so both paths are explored.
    const bool authenticated = data[0] & 0x80;
    const qsizetype piece = (data[0] & 0x7f) + 1;
    ++data;
    --size;

    ZEKTFrameReader reader;
    reader.setMaximumFrameSize(authenticated ? ZEKTFrame::maximumSize
                                             : ZEKTFrame::maximumSizeBeforeAuthentication);
    QByteArray stream;
    QBuffer buffer(&stream);
    buffer.open(QIODevice::ReadOnly);
    for (size_t at = 0; at < size; at += static_cast<size_t>(piece)) {
        const qint64 pos = buffer.pos();
        stream.append(reinterpret_cast<const char *>(data) + at,
                      static_cast<qsizetype>(qMin<size_t>(piece, size - at)));
        buffer.seek(pos);
        for (;;) {
            ZEKTFrame frame;
            const ZEKTFrameReader::Status status = reader.read(buffer, frame);
            if (status == ZEKTFrameReader::Status::error)
                return 0;
            if (status == ZEKTFrameReader::Status::needMore)
                break;
            (void)ZEKTMessageCodec::decodeMessage(frame);
            (void)ZEKTMessageCodec::decodeRequest(frame);
        }
    }
    return 0;
}
