#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Reports what the automation side can know without the console: nothing is queued.
class GetComputerStatusIntent {
public:
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
