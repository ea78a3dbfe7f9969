#pragma once

#include <QString>

// Copies of a settings file kept beside it, named by what they are and when they were
// made: "<file>.<kind>-<UTC time>", so names sort by age. Each copy is readable by the
// user alone.
namespace SuiteCopies {

// What a copy is: a file that did not parse, moved aside; a file whose computer list did
// not decode, copied before the list was replaced.
inline constexpr char unparseable[] = "corrupt";
inline constexpr char undecodable[] = "undecodable";

// Renames the file aside; the path of the copy, or empty when it could not be moved.
QString moveAside(const QString &path, const QString &kind);
// Copies the file byte for byte and keeps only the `keep` newest copies of that kind; the
// path of the copy, or empty when it could not be made.
QString copyAside(const QString &path, const QString &kind, int keep);

} // namespace SuiteCopies
