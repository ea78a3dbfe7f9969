#include "PortText.h"

#include <limits>

std::optional<quint16> PortText::parse(QStringView text)
{
    bool negative = false;
    if (text.startsWith(u'+') || text.startsWith(u'-')) {
        negative = text.front() == u'-';
        text = text.sliced(1);
    }
    if (text.isEmpty())
        return std::nullopt;
    unsigned value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        value = value * 10 + unsigned(c.unicode() - u'0');
        if (value > std::numeric_limits<quint16>::max())
            return std::nullopt;
    }
    if (negative && value != 0)
        return std::nullopt;
    return quint16(value);
}
