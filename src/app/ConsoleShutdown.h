#pragma once

#include <QObject>

class SignalWatcher;

// Ends the console on SIGTERM, SIGINT and SIGHUP the way closing its window does: every
// window closes, then the event loop quits, and main() releases the state, whose
// persistence queue drains before it goes. Made right after the application object, so
// a signal that arrives during start-up waits for the event loop instead of killing the
// process.
class ConsoleShutdown : public QObject {
    Q_OBJECT
public:
    explicit ConsoleShutdown(QObject *parent = nullptr);

    // The orderly quit itself.
    static void quit();

private:
    SignalWatcher *m_watcher;
};
