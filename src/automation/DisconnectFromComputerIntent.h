#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Queues a disconnection for the console to carry out.
class DisconnectFromComputerIntent {
public:
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
