#pragma once

#include <QCoreApplication>
#include <QLocale>
#include <QString>

// Byte counts in MB, GB or TB only: the largest unit that keeps the number at 1 or more
// (MB below that), one decimal for MB and two for GB and TB, trailing zeros dropped.
class ByteCountFormat {
    Q_DECLARE_TR_FUNCTIONS(ByteCountFormat)

public:
    // Storage counts 1000 bytes to the kilobyte, memory 1024.
    enum class Style { file, memory };

    static QString format(quint64 bytes, Style style, const QLocale &locale = QLocale());
};
