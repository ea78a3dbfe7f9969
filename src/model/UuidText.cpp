#include "UuidText.h"

namespace UuidText {

QString format(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> parse(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.size() != 36 && trimmed.size() != 38)
        return std::nullopt;
    const QUuid id = QUuid::fromString(trimmed);
    if (id.isNull()) {
        // QUuid signals failure with the null id; the all-zero text is valid input.
        static const QString zero = QStringLiteral("00000000-0000-0000-0000-000000000000");
        QString bare = trimmed;
        if (bare.size() == 38)
            bare = bare.mid(1, 36);
        if (bare != zero)
            return std::nullopt;
    }
    return id;
}

} // namespace UuidText
