#include "StopRemoteControlIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentResult StopRemoteControlIntent::perform(SharedAppState &state,
                                              const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::stopRemoteControl,
        QCoreApplication::translate("StopRemoteControlIntent", "Queued stop remote control for "));
}
