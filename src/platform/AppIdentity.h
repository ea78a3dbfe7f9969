#pragma once

#include <QString>

// Names that tie the console, telvanectl and their stored files together.
namespace AppIdentity {

inline const char *const organizationName = "Quorvel";
inline const char *const applicationName = "Telvane";
// Reverse-DNS identifier of the application; also the prefix of queue labels.
inline const char *const applicationIdentifier = "com.quorvel.Telvane";
// Names the shared preferences suite and the shared container folder.
inline const char *const appGroupIdentifier = "group.com.quorvel.Telvane";

} // namespace AppIdentity
