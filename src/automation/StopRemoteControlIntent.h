#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Queues the end of a computer's screen stream.
class StopRemoteControlIntent {
public:
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
