#pragma once

#include "ZEKTFrame.h"
#include "ZEKTMessage.h"
#include "ZEKTRequest.h"

#include <QString>
#include <optional>

// Turns records into frames and frames into records, both ways. Decoding validates every
// field (type, range, required presence); a known type with a bad body is an error, an
// unknown type is reported as skipped.
class ZEKTMessageCodec {
public:
    template <typename T> struct Decoded {
        T value{};
        bool skipped = false; // unknown frame type: ignore it
        QString error;        // malformed: end the session with this text
        bool ok() const { return error.isEmpty() && !skipped; }
    };

    // Agent to console. Encodes every agent-side record, including heartbeats and the
    // library's own command results and upload replies.
    static QByteArray encodeMessage(const ZEKTMessage &message);
    static Decoded<ZEKTMessagePtr> decodeMessage(const ZEKTFrame &frame);

    // Console to agent.
    static QByteArray encodeRequest(const ZEKTRequest &request);
    static Decoded<ZEKTRequest> decodeRequest(const ZEKTFrame &frame);

    // A fileChunk frame whose `size` data bytes, starting at `dataOffset`, are left for the
    // caller to fill (straight from the file, with no intermediate copy).
    struct ChunkFrame {
        QByteArray frame;
        qsizetype dataOffset = 0;
    };
    static ChunkFrame fileChunkFrame(quint64 requestId, qsizetype size);
    // The receiving side of the same layout: when `frame` is a fileChunk laid out as
    // fileChunkFrame() writes it, its body becomes the request's data without a copy (the
    // frame is left empty). Any other frame is untouched and gives nullopt; it still
    // decodes through decodeRequest().
    static std::optional<ZEKTRequest> takeFileChunk(ZEKTFrame &frame);
};
