#pragma once

#include "PendingActions.h"

class QSettings;

// The consumer's side of the pending-action queue. Runs off the main thread: it syncs the
// suite (another process may have written it), takes every well-formed entry and removes
// it; a malformed entry stays where it is and is ignored.
namespace PendingActionQueue {

PendingActions take(QSettings &suite);
// The file a queued upload names, even in an entry that is not well formed; nothing is
// taken. Empty when there is none.
QString stagedFileNamed(QSettings &suite);

} // namespace PendingActionQueue
