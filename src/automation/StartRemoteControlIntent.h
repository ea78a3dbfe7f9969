#pragma once

#include "IntentDescription.h"
#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Queues remote control: the console selects the computer, connects and streams.
class StartRemoteControlIntent {
public:
    static IntentDescription description();
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
