#include "RemoteControlWindowLauncher.h"

#include "RemoteControlWindowController.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "state/AppState.h"

RemoteControlWindowLauncher::RemoteControlWindowLauncher(AppState &appState) : m_appState(appState)
{
}

RemoteControlWindowLauncher::~RemoteControlWindowLauncher()
{
    for (const QPointer<RemoteControlWindowController> &controller : std::as_const(m_controllers))
        delete controller.data();
}

QObject *RemoteControlWindowLauncher::openRemoteControlWindow(const QUuid &computerId)
{
    const std::optional<RemoteComputer> computer = m_appState.computer(computerId);
    if (!computer) {
        LogManager::shared().log(
            QStringLiteral("Cannot open remote control: no computer with id ") +
                UuidText::format(computerId),
            QStringLiteral("ERROR"));
        return nullptr;
    }
    m_controllers.removeAll(nullptr);
    auto *controller = new RemoteControlWindowController(*computer, m_appState);
    m_controllers.append(controller);
    controller->showWindow();
    return controller;
}
