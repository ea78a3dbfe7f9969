#pragma once

#include <QCoreApplication>
#include <QString>

// Time since boot: "1d 1h" from a day on, "1h 1m" from an hour, else "10m" ("0m" below a
// minute).
class UptimeFormat {
    Q_DECLARE_TR_FUNCTIONS(UptimeFormat)

public:
    static QString format(quint64 seconds);
};
