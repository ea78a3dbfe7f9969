#pragma once

#include "IntentParameters.h"
#include "model/RemoteComputer.h"

#include <optional>

class SharedAppState;

// Finds the computer an automation action names: the entity wins over the name.
namespace IntentComputerResolver {

bool hasComputerParameter(const IntentParameters &parameters);
// The entity's id must parse as a UUID and be stored; else the first computer whose
// display name contains the name, ignoring case. None when nothing matches or neither
// parameter is given.
std::optional<RemoteComputer> resolve(SharedAppState &state, const IntentParameters &parameters);

} // namespace IntentComputerResolver
