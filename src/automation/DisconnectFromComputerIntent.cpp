#include "DisconnectFromComputerIntent.h"

#include "QueuedComputerAction.h"
#include "platform/PendingActionKeys.h"

#include <QCoreApplication>

IntentDescription DisconnectFromComputerIntent::description()
{
    return IntentDescription{QCoreApplication::translate("DisconnectFromComputerIntent",
                                                         "Disconnect from Remote Computer"),
                             QCoreApplication::translate("DisconnectFromComputerIntent",
                                                         "The remote computer to disconnect from"),
                             QCoreApplication::translate("DisconnectFromComputerIntent",
                                                         "Name of the computer to disconnect from"),
                             {}};
}

IntentResult DisconnectFromComputerIntent::perform(SharedAppState &state,
                                                   const IntentParameters &parameters)
{
    return QueuedComputerAction::perform(
        state, parameters, PendingActionKeys::disconnection,
        QCoreApplication::translate("DisconnectFromComputerIntent", "Queued disconnection for "));
}
