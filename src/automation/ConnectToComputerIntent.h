#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Queues a connection for the console to open.
class ConnectToComputerIntent {
public:
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
