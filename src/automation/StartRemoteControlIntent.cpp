#include "StartRemoteControlIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentDescription StartRemoteControlIntent::description()
{
    return IntentDescription{
        QCoreApplication::translate("StartRemoteControlIntent", "Start Remote Control"),
        QCoreApplication::translate("StartRemoteControlIntent",
                                    "The computer to start remote controlling"),
        QCoreApplication::translate("StartRemoteControlIntent", "Name of the computer to control"),
        {}};
}

IntentResult StartRemoteControlIntent::perform(SharedAppState &state,
                                               const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::remoteControl,
        QCoreApplication::translate("StartRemoteControlIntent", "Queued remote control for "));
}
