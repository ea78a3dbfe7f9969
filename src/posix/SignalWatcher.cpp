#include "SignalWatcher.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {
int g_pipe[2] = {-1, -1};

void onSignal(int number)
{
    const int savedErrno = errno;
    const char byte = char(number);
    [[maybe_unused]] const ssize_t n = ::write(g_pipe[1], &byte, 1);
    errno = savedErrno;
}

QString nameOf(int number)
{
    const char *abbreviation = sigabbrev_np(number);
    return abbreviation ? QStringLiteral("SIG") + QLatin1String(abbreviation)
                        : QStringLiteral("signal %1").arg(number);
}
} // namespace

SignalWatcher::SignalWatcher(std::initializer_list<int> signalNumbers, QObject *parent)
    : QObject(parent), m_signals(signalNumbers)
{
    if (g_pipe[0] >= 0 || pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(g_pipe[0], &byte, 1) == 1)
            Q_EMIT received(nameOf(int(byte)));
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int number : std::as_const(m_signals))
        sigaction(number, &action, nullptr);
}

SignalWatcher::~SignalWatcher()
{
    if (!m_notifier)
        return;
    for (const int number : std::as_const(m_signals))
        signal(number, SIG_DFL);
    delete m_notifier;
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}
