#include "IntentComputerResolver.h"

#include "SharedAppState.h"
#include "model/UuidText.h"

namespace IntentComputerResolver {

bool hasComputerParameter(const IntentParameters &parameters)
{
    return parameters.computer.has_value() || parameters.computerName.has_value();
}

std::optional<RemoteComputer> resolve(SharedAppState &state, const IntentParameters &parameters)
{
    if (parameters.computer) {
        const std::optional<QUuid> id = UuidText::parse(parameters.computer->id);
        if (!id)
            return std::nullopt;
        for (const RemoteComputer &computer : state.loadComputers()) {
            if (computer.id == *id)
                return computer;
        }
        return std::nullopt;
    }
    if (parameters.computerName)
        return state.findComputer(*parameters.computerName);
    return std::nullopt;
}

} // namespace IntentComputerResolver
