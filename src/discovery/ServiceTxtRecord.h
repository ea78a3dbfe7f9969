#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

// The texts an agent announces in its DNS-SD TXT record. Reading is pure and never fails:
// whatever is missing, repeated or not UTF-8 is simply absent.
struct ServiceTxtRecord {
    std::optional<QString> name;
    std::optional<QString> hostname;
    std::optional<QString> version;

    // `items` are the raw "key=value" strings in record order. Keys match without regard
    // to case and the first occurrence of a key decides (a later repeat is ignored, as DNS-SD
    // asks); a key without "=" has no value, so it is absent; "key=" is the empty text.
    // A value counts only when it is well-formed UTF-8; a leading byte order mark is kept.
    static ServiceTxtRecord read(const QList<QByteArray> &items);
};
