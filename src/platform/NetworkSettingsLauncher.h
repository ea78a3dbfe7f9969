#pragma once

#include <QString>
#include <QStringList>

// Opens the desktop's network settings, where a known settings program is installed.
namespace NetworkSettingsLauncher {

struct Command {
    QString program;
    QStringList arguments;
};

// The first known settings program found in PATH, with the arguments that open its
// network page; empty program when none is installed.
Command findCommand();
// Starts that program detached; false (and nothing started) when there is none.
bool open();

} // namespace NetworkSettingsLauncher
