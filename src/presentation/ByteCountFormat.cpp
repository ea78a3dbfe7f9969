#include "ByteCountFormat.h"

#include <array>
#include <cmath>

namespace {

struct Unit {
    const char *name;
    int fractionDigits;
};
constexpr std::array<Unit, 3> units{{{QT_TRANSLATE_NOOP("ByteCountFormat", "MB"), 1},
                                     {QT_TRANSLATE_NOOP("ByteCountFormat", "GB"), 2},
                                     {QT_TRANSLATE_NOOP("ByteCountFormat", "TB"), 2}}};

double roundTo(double value, int digits)
{
    const double scale = std::pow(10.0, digits);
    return std::round(value * scale) / scale;
}

QString withoutTrailingZeros(QString number, const QLocale &locale)
{
    const QString point = locale.decimalPoint();
    const qsizetype at = number.lastIndexOf(point);
    if (at < 0)
        return number;
    while (number.endsWith(QLatin1Char('0')))
        number.chop(1);
    if (number.endsWith(point))
        number.chop(point.size());
    return number;
}

} // namespace

QString ByteCountFormat::format(quint64 bytes, Style style, const QLocale &locale)
{
    const double base = style == Style::file ? 1000.0 : 1024.0;
    // Doubles: a count near 2^64 stays in range, and the few bits lost do not show.
    double value = double(bytes) / (base * base);
    size_t unit = 0;
    while (unit + 1 < units.size() && value >= base) {
        value /= base;
        ++unit;
    }
    value = roundTo(value, units[unit].fractionDigits);
    if (value >= base && unit + 1 < units.size()) { // 999.96 MB shows as 1 GB
        value = roundTo(value / base, units[++unit].fractionDigits);
    }
    const QString number =
        withoutTrailingZeros(locale.toString(value, 'f', units[unit].fractionDigits), locale);
    return tr("%1 %2").arg(number, tr(units[unit].name));
}
