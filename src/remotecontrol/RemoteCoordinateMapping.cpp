#include "RemoteCoordinateMapping.h"

#include "model/LogManager.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

void logError(const QString &message)
{
    LogManager::shared().log(message, QStringLiteral("ERROR"));
}

} // namespace

double RemoteCoordinateMapping::convert(double clientCoordinate, double clientSize,
                                        double serverSize)
{
    if (!std::isfinite(clientSize) || clientSize <= 0 || !std::isfinite(serverSize) ||
        serverSize <= 0 || !std::isfinite(clientCoordinate)) {
        logError(QStringLiteral("Invalid coordinate conversion parameters: clientCoord=") +
                 numberText(clientCoordinate) + QStringLiteral(", clientSize=") +
                 numberText(clientSize) + QStringLiteral(", serverSize=") + numberText(serverSize));
        return 0;
    }
    double clamped = std::min(clientCoordinate, clientSize);
    if (clamped < 0)
        clamped = 0;
    const double result = clamped / clientSize * serverSize;
    if (!std::isfinite(result) || result < 0 || result > serverSize) {
        logError(QStringLiteral("Invalid coordinate conversion result: ") + numberText(result));
        return 0;
    }
    return result;
}

std::optional<QPointF> RemoteCoordinateMapping::map(const QPointF &position, const QSizeF &viewSize,
                                                    const QSizeF &serverSize)
{
    const double w = viewSize.width(), h = viewSize.height();
    if (!(position.x() >= 0 && position.x() < w && position.y() >= 0 && position.y() < h))
        return std::nullopt;
    return QPointF(convert(position.x(), w, serverSize.width()),
                   convert(h - position.y(), h, serverSize.height()));
}

QString RemoteCoordinateMapping::numberText(double value)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    // The shortest round-trip digits, then laid out as plain decimals for exponents from
    // -4 to 15 and in exponent form beyond, as the log's readers know them.
    char buffer[64];
    const auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
    if (error != std::errc())
        return QString::number(value);
    const std::string text(buffer, end);
    const size_t e = text.find('e');
    const bool negative = text[0] == '-';
    std::string digits = text.substr(negative ? 1 : 0, e - (negative ? 1 : 0));
    if (digits.size() > 1)
        digits.erase(1, 1); // the decimal point
    const int exponent = std::atoi(text.c_str() + e + 1);
    std::string out = negative ? "-" : "";
    if (exponent < -4 || exponent >= 16) {
        out += digits.substr(0, 1);
        if (digits.size() > 1)
            out += "." + digits.substr(1);
        const std::string magnitude = std::to_string(std::abs(exponent));
        out +=
            std::string(exponent < 0 ? "e-" : "e+") + (magnitude.size() < 2 ? "0" : "") + magnitude;
    } else if (exponent < 0) {
        out += "0." + std::string(size_t(-exponent - 1), '0') + digits;
    } else if (size_t(exponent) + 1 >= digits.size()) {
        out += digits + std::string(size_t(exponent) + 1 - digits.size(), '0') + ".0";
    } else {
        out += digits.substr(0, size_t(exponent) + 1) + "." + digits.substr(size_t(exponent) + 1);
    }
    return QString::fromStdString(out);
}
