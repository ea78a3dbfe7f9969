#include "ConsoleShutdown.h"

#include "posix/SignalWatcher.h"

#include <QApplication>
#include <csignal>

ConsoleShutdown::ConsoleShutdown(QObject *parent)
    : QObject(parent), m_watcher(new SignalWatcher({SIGTERM, SIGINT, SIGHUP}, this))
{
    // The watcher reports from the event loop, so a signal during start-up waits for it.
    connect(m_watcher, &SignalWatcher::received, this, &ConsoleShutdown::quit);
}

void ConsoleShutdown::quit()
{
    QApplication::closeAllWindows();
    QCoreApplication::quit();
}
