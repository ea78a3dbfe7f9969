#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

class SharedAppState;

// Stages a copy of the file and queues its upload; the console sends it later.
class UploadFileIntent {
public:
    static IntentResult perform(SharedAppState &state, const IntentParameters &parameters);
};
