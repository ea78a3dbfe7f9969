#pragma once

#include <QString>

// Texts an agent reported, made fit to show on one line: control characters become spaces,
// runs of white space one space, and very long texts are cut (the record keeps them whole).
namespace ReportedText {

inline constexpr int maxShownLength = 256;

QString shown(const QString &reported);

} // namespace ReportedText
