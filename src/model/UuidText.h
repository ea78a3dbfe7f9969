#pragma once

#include <QString>
#include <QUuid>
#include <optional>

// Computer ids are written everywhere (storage, queues, file names, automation) as the
// canonical 36-character upper-case UUID text.
namespace UuidText {

QString format(const QUuid &id);
// Accepts the 36-character form in any case (with or without braces); anything else,
// including the null UUID text, gives nothing.
std::optional<QUuid> parse(const QString &text);

} // namespace UuidText
