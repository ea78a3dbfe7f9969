#include "ServiceTxtRecord.h"

#include <QStringDecoder>

namespace {

std::optional<QString> strictUtf8(const QByteArray &bytes)
{
    // A fresh stateless decoder per value: a stateful one keeps a cut-off sequence for the
    // next call and reports no error.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace

ServiceTxtRecord ServiceTxtRecord::read(const QList<QByteArray> &items)
{
    ServiceTxtRecord record;
    struct Slot {
        QByteArrayView key;
        std::optional<QString> *value;
        bool seen = false;
    };
    Slot wanted[] = {
        {"name", &record.name}, {"hostname", &record.hostname}, {"version", &record.version}};
    for (const QByteArray &item : items) {
        const qsizetype equals = item.indexOf('=');
        const QByteArrayView key = QByteArrayView(item).first(equals < 0 ? item.size() : equals);
        for (Slot &slot : wanted) {
            if (slot.seen || key.compare(slot.key, Qt::CaseInsensitive) != 0)
                continue;
            slot.seen = true;
            if (equals >= 0)
                *slot.value = strictUtf8(item.mid(equals + 1));
        }
    }
    return record;
}
