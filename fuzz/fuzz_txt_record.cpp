// TXT records come from anyone on the local network. The input is read as a record's wire
// form (a length byte before each item): the reader must take any bytes, and whatever it
// accepts must be text that survives the way back to UTF-8.
#include "discovery/DiscoveredServer.h"
#include "discovery/ServiceTxtRecord.h"

#include <QStringDecoder>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QList<QByteArray> items;
    for (size_t at = 0; at < size;) {
        const size_t length = data[at++];
        const size_t take = std::min(length, size - at);
        items.append(QByteArray(reinterpret_cast<const char *>(data + at), qsizetype(take)));
        at += take;
    }
    const ServiceTxtRecord record = ServiceTxtRecord::read(items);
    for (const auto &text : {record.name, record.hostname, record.version}) {
        if (!text)
            continue;
        // Strict decoding: what came in as text goes out as the same text (a leading byte
        // order mark included).
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        if (QString(decoder.decode(text->toUtf8())) != *text || decoder.hasError())
            std::abort();
    }
    const DiscoveredServer server(QStringLiteral("instance"), QStringLiteral("host.local"), 5905,
                                  record.name, record.hostname, record.version);
    if (server.displayText().isEmpty())
        std::abort();
    return 0;
}
