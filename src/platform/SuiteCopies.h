#pragma once

#include <QString>

// Copies of a settings file kept beside it, named by what they are and when they were
// made: "<file>.<kind>-<UTC time>", so names sort by age. Each copy is readable by the
// user alone.
namespace SuiteCopies {

// Renames the file aside; the path of the copy, or empty when it could not be moved.
QString moveAside(const QString &path, const QString &kind);
// Copies the file byte for byte and keeps only the `keep` newest copies of that kind; the
// path of the copy, or empty when it could not be made.
QString copyAside(const QString &path, const QString &kind, int keep);

} // namespace SuiteCopies
