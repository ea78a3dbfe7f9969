#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// The common part of the four actions that queue a computer id: resolve the computer,
// store its id under `key`, return `returnedPrefix` followed by its display name.
namespace QueuedComputerAction {

IntentResult perform(SharedAppState &state, const IntentParameters &parameters, const char *key,
                     const QString &returnedPrefix);

} // namespace QueuedComputerAction
