#pragma once

#include <QString>

// One technical fact of a computer as a titled value with a symbol ("OS", "14.2").
struct SpecPill {
    QString title;
    QString value;
    QString systemImage;

    bool operator==(const SpecPill &) const = default;
};
