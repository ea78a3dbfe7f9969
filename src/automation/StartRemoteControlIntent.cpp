#include "StartRemoteControlIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentResult StartRemoteControlIntent::perform(SharedAppState &state,
                                               const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::remoteControl,
        QCoreApplication::translate("StartRemoteControlIntent", "Queued remote control for "));
}
