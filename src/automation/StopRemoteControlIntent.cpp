#include "StopRemoteControlIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentDescription StopRemoteControlIntent::description()
{
    return IntentDescription{
        QCoreApplication::translate("StopRemoteControlIntent", "Stop Remote Control"),
        QCoreApplication::translate("StopRemoteControlIntent",
                                    "The computer to stop remote controlling"),
        QCoreApplication::translate("StopRemoteControlIntent",
                                    "Name of the computer to stop controlling"),
        {}};
}

IntentResult StopRemoteControlIntent::perform(SharedAppState &state,
                                              const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::stopRemoteControl,
        QCoreApplication::translate("StopRemoteControlIntent", "Queued stop remote control for "));
}
