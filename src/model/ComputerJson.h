#pragma once

#include "RemoteComputer.h"

#include <QByteArray>
#include <QList>
#include <QVariant>
#include <optional>

// JSON form of computer records: keys in declaration order, absent optionals omitted,
// dates as seconds since 2001-01-01 00:00:00 UTC, bytes as Base64, ids as upper-case
// UUID text. Records decode leniently (defaults for missing keys); the nested
// statistics decode strictly; a key with a value of the wrong type fails the decoding.
namespace ComputerJson {

// Empty result and `error` set when a value cannot be written (a non-finite number).
QByteArray encodeList(const QList<RemoteComputer> &computers, QString *error = nullptr);
QByteArray encode(const RemoteComputer &computer, QString *error = nullptr);

// Any failing record fails the whole list.
std::optional<QList<RemoteComputer>> decodeList(const QByteArray &json, QString *error = nullptr);
std::optional<RemoteComputer> decode(const QByteArray &json, QString *error = nullptr);
// A list as stored in a preference store: empty when the value is absent or does not
// decode.
QList<RemoteComputer> decodeStoredList(const QVariant &stored);

// Seconds since 2001-01-01 00:00:00 UTC.
double toReferenceSeconds(const QDateTime &time);
std::optional<QDateTime> fromReferenceSeconds(double seconds);

} // namespace ComputerJson
