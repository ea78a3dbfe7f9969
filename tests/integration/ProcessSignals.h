#pragma once

#include <QProcess>
#include <csignal>

// Sends a signal to a child that is still running. A finished QProcess has the id 0, and
// kill(0, …) would hit the test's own process group.
inline bool signalRunning(const QProcess &process, int signalNumber)
{
    const qint64 pid = process.processId();
    return process.state() != QProcess::NotRunning && pid > 0 &&
           ::kill(pid_t(pid), signalNumber) == 0;
}
