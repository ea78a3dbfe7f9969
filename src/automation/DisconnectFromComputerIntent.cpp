#include "DisconnectFromComputerIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentResult DisconnectFromComputerIntent::perform(SharedAppState &state,
                                                   const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::disconnection,
        QCoreApplication::translate("DisconnectFromComputerIntent", "Queued disconnection for "));
}
