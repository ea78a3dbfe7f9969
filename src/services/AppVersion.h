#pragma once

#include <QString>

namespace AppVersion {

// The version of this build (the project's version), trimmed.
QString running();

} // namespace AppVersion
