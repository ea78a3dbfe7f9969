// Decodes arbitrary frame bodies of every type, both directions; whatever decodes must
// encode again.

#include "ZEKTMessageCodec.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    ZEKTFrame frame;
    frame.type = static_cast<quint16>((data[0] << 8) | data[1]);
    frame.body =
        QByteArray(reinterpret_cast<const char *>(data) + 2, static_cast<qsizetype>(size - 2));
    const auto message = ZEKTMessageCodec::decodeMessage(frame);
    if (message.ok() && message.value)
        (void)ZEKTMessageCodec::encodeMessage(*message.value);
    const auto request = ZEKTMessageCodec::decodeRequest(frame);
    if (request.ok())
        (void)ZEKTMessageCodec::encodeRequest(request.value);
    // The upload fast path must take only what the full decoder accepts, with the same data.
    if (const auto taken = ZEKTMessageCodec::takeFileChunk(frame)) {
        if (!request.ok() || request.value.data != taken->data ||
            request.value.requestId != taken->requestId)
            __builtin_trap();
    }
    return 0;
}
