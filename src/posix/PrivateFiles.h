#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// Files and folders with the user's data, for the user alone whatever the umask: files
// 0600, folders 0700. Only Telvane's own folders are ever narrowed; a folder the user
// owns around them (~/.config, ~/.local/share, ~/Documents) is never changed.
namespace PrivateFiles {

// Makes `path` with every missing folder above it, each new one 0700. Existing folders
// keep their mode, except those from `ownFrom` (`path` itself or a folder above it, the
// top of Telvane's own folders there) down to `path`, which are narrowed to 0700 when
// they are wider. An empty `ownFrom` narrows nothing. False when `path` is no folder.
bool makeFolder(const QString &path, const QString &ownFrom = {});
// Makes an existing file 0600; false when it cannot.
bool restrictFile(const QString &path);
// Replaces the file atomically with `data`, 0600 before a byte is written; the error
// text when it could not.
std::optional<QString> write(const QString &path, const QByteArray &data);

} // namespace PrivateFiles
