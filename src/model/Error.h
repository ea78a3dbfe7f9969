#pragma once

#include <QString>

// A failure carried as a value: errors the console makes itself use code -1 and a
// domain naming their origin ("ZEKT", "ZEKTManager", "RemoteControl", ...).
struct Error {
    QString domain;
    int code = -1;
    QString description;

    bool operator==(const Error &) const = default;
};
