#pragma once

#include "IntentDescription.h"
#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Queues the end of a computer's screen stream.
class StopRemoteControlIntent {
public:
    static IntentDescription description();
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
