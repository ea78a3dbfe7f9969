#include "ConnectToComputerIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentDescription ConnectToComputerIntent::description()
{
    return IntentDescription{
        QCoreApplication::translate("ConnectToComputerIntent", "Connect to Remote Computer"),
        QCoreApplication::translate("ConnectToComputerIntent", "The remote computer to connect to"),
        QCoreApplication::translate("ConnectToComputerIntent",
                                    "Name of the computer to connect to"),
        {}};
}

IntentResult ConnectToComputerIntent::perform(SharedAppState &state,
                                              const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::connection,
        QCoreApplication::translate("ConnectToComputerIntent", "Queued connection for "));
}
