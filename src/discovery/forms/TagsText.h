#pragma once

#include <QString>
#include <QStringList>

// Tags as the edit form shows and reads them: one line, comma-separated.
struct TagsText {
    // "a, b".
    static QString join(const QStringList &tags);
    // Split at every ",", pieces that are empty between commas skipped, each piece trimmed
    // of spaces and tabs only ("a, ,b" keeps an empty middle tag).
    static QStringList split(QStringView text);
};
