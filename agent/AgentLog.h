#pragma once

#include <QString>

// The agent's log: one line per event on standard error, with a UTC time stamp and a
// category. Safe from any thread (one write() per line).
class AgentLog {
public:
    static void write(const QString &category, const QString &message);
    // Routes Qt's own warnings through the same format.
    static void installQtMessageHandler();
};
