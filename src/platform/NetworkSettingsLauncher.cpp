#include "NetworkSettingsLauncher.h"

#include <QProcess>
#include <QStandardPaths>

namespace NetworkSettingsLauncher {

Command findCommand()
{
    // GNOME, KDE Plasma, then the desktop-neutral NetworkManager editor.
    const Command known[] = {
        {QStringLiteral("gnome-control-center"), {QStringLiteral("network")}},
        {QStringLiteral("systemsettings"), {QStringLiteral("kcm_networkmanagement")}},
        {QStringLiteral("nm-connection-editor"), {}},
    };
    for (const Command &command : known) {
        const QString path = QStandardPaths::findExecutable(command.program);
        if (!path.isEmpty())
            return Command{path, command.arguments};
    }
    return {};
}

bool open()
{
    const Command command = findCommand();
    if (command.program.isEmpty())
        return false;
    return QProcess::startDetached(command.program, command.arguments);
}

} // namespace NetworkSettingsLauncher
