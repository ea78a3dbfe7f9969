#include "AppIntentUploadError.h"

#include <QCoreApplication>

namespace AppIntentUploadError {

Error make(Code code)
{
    QString description;
    switch (code) {
    case sharedDirectoryUnavailable:
        description = QCoreApplication::translate("AppIntentUploadError",
                                                  "Shared upload directory is unavailable");
        break;
    case notANonEmptyRegularFile:
        description = QCoreApplication::translate(
            "AppIntentUploadError", "The selected item is not a non-empty regular file");
        break;
    case exceedsTransferLimit:
        description = QCoreApplication::translate(
            "AppIntentUploadError", "The selected file exceeds the 256 MiB transfer limit");
        break;
    }
    return Error{QLatin1String(domain), int(code), description};
}

} // namespace AppIntentUploadError
