#pragma once

#include <functional>

// Waits by running the event loop. QTest::qWait and qWaitFor (and so QTRY_*) sleep 10 ms
// between rounds of events; Qt WebEngine runs its browser thread's tasks on this thread, one
// after another, so each of them would wait for a sleep and a page load takes seconds instead
// of milliseconds.
namespace EventLoopWait {

// True when `done` held within `timeoutMs`.
bool until(const std::function<bool()> &done, int timeoutMs);
void runFor(int milliseconds);

} // namespace EventLoopWait
