#include "SignalWatcher.h"

#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {
int g_pipe[2] = {-1, -1};

void onSignal(int number)
{
    const char byte = char(number);
    [[maybe_unused]] const ssize_t n = ::write(g_pipe[1], &byte, 1);
}
} // namespace

SignalWatcher::SignalWatcher(QObject *parent) : QObject(parent)
{
    if (pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(g_pipe[0], &byte, 1) == 1)
            Q_EMIT received(byte == SIGTERM ? QStringLiteral("SIGTERM") : QStringLiteral("SIGINT"));
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

SignalWatcher::~SignalWatcher()
{
    signal(SIGTERM, SIG_DFL);
    signal(SIGINT, SIG_DFL);
}
