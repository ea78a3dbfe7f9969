#include "UploadFileIntent.h"

#include "IntentComputerResolver.h"
#include "SharedAppState.h"
#include "WardlineError.h"

#include <QCoreApplication>

IntentResult UploadFileIntent::perform(SharedAppState &state, const IntentParameters &parameters)
{
    // The file is checked before the computer is looked up.
    if (!parameters.file)
        return IntentResult::failure(WardlineError::make(WardlineError::fileNotProvided));
    const std::optional<RemoteComputer> computer =
        IntentComputerResolver::resolve(state, parameters);
    if (!computer)
        return IntentResult::failure(WardlineError::make(WardlineError::computerNotFound));
    if (!parameters.file->location || parameters.file->location->isEmpty())
        return IntentResult::failure(WardlineError::make(WardlineError::fileNotProvided));
    // Files handed over on Linux need no scoped access grant: the path is read as is.
    if (const std::optional<Error> error =
            state.stageUpload(*parameters.file->location, parameters.file->name, computer->id))
        return IntentResult::failure(*error);
    return IntentResult::success(
        QCoreApplication::translate("UploadFileIntent", "Queued upload of ") +
        parameters.file->name + QCoreApplication::translate("UploadFileIntent", " to ") +
        computer->displayName());
}
