#pragma once

#include <QString>
#include <optional>

// Whether Qt WebEngine can start in this process. Chromium ends the whole process instead of
// failing when its helper program is missing or when it has no sandbox it may use (as root
// without the sandbox switched off, or without user namespaces), so the console asks before it
// makes its first web view and shows a notice instead.
namespace WebEngineSupport {

struct Conditions {
    bool helperFound = true;
    QString helperLookedFor; // where the helper was looked for, for the reason
    bool sandboxDisabled = false;
    bool runningAsRoot = false;
    bool userNamespacesAvailable = true;
};

// The reason the web engine cannot start under `conditions`, in words for the log, or none.
std::optional<QString> whyUnavailable(const Conditions &conditions);

// This process's conditions, looked up the way Qt WebEngine looks them up. Needs the
// application object; probes user namespaces (one short-lived child) only when it matters.
Conditions probe();

} // namespace WebEngineSupport
