#include "ConnectToComputerIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentResult ConnectToComputerIntent::perform(SharedAppState &state,
                                              const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::connection,
        QCoreApplication::translate("ConnectToComputerIntent", "Queued connection for "));
}
