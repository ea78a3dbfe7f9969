#pragma once

class QThread;

// The small pool of I/O threads that all clients of the process share: a session costs a
// socket and a few timers, not a thread, so hundreds of sessions stay cheap. Threads start
// on first use and stop when the QCoreApplication is destroyed.
class ZEKTIoThreads {
public:
    static constexpr int threadCount = 2;
    // The thread for a new session (round robin).
    static QThread *next();
};
