#include "GetComputerStatusIntent.h"

#include "IntentComputerResolver.h"
#include "SharedAppState.h"
#include "WardlineError.h"

#include <QCoreApplication>
#include <QStringList>

IntentResult GetComputerStatusIntent::perform(SharedAppState &state,
                                              const IntentParameters &parameters)
{
    if (!IntentComputerResolver::hasComputerParameter(parameters)) {
        // The live status belongs to the console; only the list is known here.
        QStringList lines;
        for (const RemoteComputer &computer : state.loadComputers()) {
            lines.append(computer.displayName() +
                         QCoreApplication::translate(
                             "GetComputerStatusIntent",
                             ": Disconnected (status not available via AppIntents)"));
        }
        return IntentResult::success(lines.join(QLatin1Char('\n')));
    }
    const std::optional<RemoteComputer> computer =
        IntentComputerResolver::resolve(state, parameters);
    if (!computer)
        return IntentResult::failure(WardlineError::make(WardlineError::computerNotFound));
    return IntentResult::success(
        computer->displayName() +
        QCoreApplication::translate("GetComputerStatusIntent", " status check requested"));
}
