#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QString>

// A moment as the views show it: the date with the month's short name, in the locale's
// order ("Nov 24, 2026" in US English), and the time in the locale's short format. Qt has
// no such date format, so it is made from the locale's long one without the weekday.
class DateTimeText {
    Q_DECLARE_TR_FUNCTIONS(DateTimeText)

public:
    static QString dateFormat(const QLocale &locale);
    static QString format(const QDateTime &moment, const QLocale &locale = QLocale());
};
