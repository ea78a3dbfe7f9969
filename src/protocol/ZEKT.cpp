#include "ZEKT.h"

#include <QMutex>

#include <atomic>

namespace ZEKT {
namespace {
// Stored as doubles behind atomics: read from any thread, written only by tests.
std::atomic<double> g_connection{10.0};
std::atomic<double> g_handshake{5.0};
std::atomic<double> g_identityPrompt{15.0};
QMutex g_timingsLock;
ProtocolTimings g_timings;
} // namespace

QString toString(ConnectionState state)
{
    switch (state) {
    case ConnectionState::disconnected:
        return QStringLiteral("disconnected");
    case ConnectionState::connecting:
        return QStringLiteral("connecting");
    case ConnectionState::handshaking:
        return QStringLiteral("handshaking");
    case ConnectionState::authenticating:
        return QStringLiteral("authenticating");
    case ConnectionState::connected:
        return QStringLiteral("connected");
    case ConnectionState::closed:
        return QStringLiteral("closed");
    }
    return QStringLiteral("unknown");
}

double connectionTimeout()
{
    return g_connection.load();
}
double handshakeTimeout()
{
    return g_handshake.load();
}
double serverIdentityPromptTimeout()
{
    return g_identityPrompt.load();
}

void setTimeoutsForTesting(const TimeoutOverrides &overrides)
{
    g_connection.store(overrides.connection);
    g_handshake.store(overrides.handshake);
    g_identityPrompt.store(overrides.identityPrompt);
}

void resetTimeoutsForTesting()
{
    setTimeoutsForTesting(TimeoutOverrides{});
}

ProtocolTimings protocolTimings()
{
    QMutexLocker locker(&g_timingsLock);
    return g_timings;
}

void setProtocolTimingsForTesting(const ProtocolTimings &timings)
{
    QMutexLocker locker(&g_timingsLock);
    g_timings = timings;
}

void resetProtocolTimingsForTesting()
{
    setProtocolTimingsForTesting(ProtocolTimings{});
}

} // namespace ZEKT
