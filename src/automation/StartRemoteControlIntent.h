#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Queues remote control: the console selects the computer, connects and streams.
class StartRemoteControlIntent {
public:
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
