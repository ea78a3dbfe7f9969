#pragma once

#include <QUrl>

// Shows a saved file in the desktop's file manager, selected, through the session bus's
// org.freedesktop.FileManager1; without that service, or when it fails, the file's folder is
// opened with the default handler. Never waits: the bus answer arrives on the event loop.
namespace FileRevealer {

void reveal(const QUrl &file);

} // namespace FileRevealer
