#pragma once

class QObject;
class QThread;

// The small pool of I/O threads that all clients of the process share: a session costs a
// socket and a few timers, not a thread, so hundreds of sessions stay cheap. Threads start
// on first use and stop when the QCoreApplication is destroyed.
class ZEKTIoThreads {
public:
    static constexpr int threadCount = 2;
    // The thread for a new session (round robin).
    static QThread *next();
    // An object on the calling I/O thread that is deleted when that thread stops: the
    // parent of sockets still saying goodbye after their session went, so none outlives
    // the thread. Null on any other thread.
    static QObject *keeper();
};
