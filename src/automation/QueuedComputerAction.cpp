#include "QueuedComputerAction.h"

#include "IntentComputerResolver.h"
#include "SharedAppState.h"
#include "WardlineError.h"

namespace QueuedComputerAction {

IntentResult perform(SharedAppState &state, const IntentParameters &parameters, const char *key,
                     const QString &returnedPrefix)
{
    const std::optional<RemoteComputer> computer =
        IntentComputerResolver::resolve(state, parameters);
    if (!computer)
        return IntentResult::failure(WardlineError::make(WardlineError::computerNotFound));
    // Reported as queued even when the suite could not be opened.
    state.queueComputerAction(key, computer->id);
    return IntentResult::success(returnedPrefix + computer->displayName());
}

} // namespace QueuedComputerAction
