#pragma once

#include <QString>

// Names for saved downloads: the server's suggestion reduced to a plain file name, then the
// first of "name.ext", "name (1).ext", "name (2).ext", … that is free in the folder.
namespace DownloadFileNames {

// The last path component of `suggested` (either slash); a component that is empty, "." or
// ".." gives `fallback`.
QString plainName(const QString &suggested, const QString &fallback);

// `name` with " (n)" before its extension (after the last dot): "a.tar.gz" → "a.tar (1).gz",
// "name" → "name (1)". A leading dot starts no extension (".profile" → ".profile (1)").
QString numbered(const QString &name, int n);

// The first name from `name`, numbered(name, 1), numbered(name, 2), … for which neither the
// file nor the web engine's partial file (name + ".download") exists in `folder`.
QString firstFreeName(const QString &folder, const QString &name);

// The web engine's partial file for a download saved as `path`.
QString partialFilePath(const QString &path);

} // namespace DownloadFileNames
