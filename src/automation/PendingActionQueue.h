#pragma once

#include "PendingActions.h"

#include <memory>

class QLockFile;
class QSettings;

// The consumer's side of the pending-action queue. Runs off the main thread: it syncs the
// suite (another process may have written it), takes every well-formed entry and removes
// it; a malformed entry stays where it is and is ignored.
namespace PendingActionQueue {

// Takes the queue lock (see lock()) for the whole read-and-remove.
PendingActions take(QSettings &suite);

// QSettings merges keys, but a read followed by a removal is not atomic: a request written
// in between would be removed unread. Writers of queue keys and the consumer therefore
// hold this lock (a lock file in the shared container, outside the watched folder) for
// their few milliseconds of settings I/O. Null when the lock cannot be had; callers then
// go on without it rather than drop the request.
std::unique_ptr<QLockFile> lock();

} // namespace PendingActionQueue
