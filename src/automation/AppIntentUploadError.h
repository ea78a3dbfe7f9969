#pragma once

#include "model/Error.h"

// Failures of staging a file for a queued upload.
namespace AppIntentUploadError {

inline constexpr char domain[] = "Telvane.AppIntentUpload";

enum Code { sharedDirectoryUnavailable = 1, notANonEmptyRegularFile = 2, exceedsTransferLimit = 3 };

Error make(Code code);

} // namespace AppIntentUploadError
