#pragma once

#include <QString>
#include <QtGlobal>

// Library-wide constants of the session protocol.
namespace ZEKT {

// The client's own session state; only `connected` means the session is usable.
enum class ConnectionState {
    disconnected,
    connecting,
    handshaking,
    authenticating,
    connected,
    closed
};

QString toString(ConnectionState state);

// Seconds. Functions rather than constants so tests can shorten them through
// setTimeoutsForTesting(); production code never calls that.
double connectionTimeout();
double handshakeTimeout();
double serverIdentityPromptTimeout();

inline constexpr float screenCaptureQuality = 0.5f;
inline constexpr qint64 maxFileTransferSize = 268435456; // 256 MiB

struct TimeoutOverrides {
    double connection = 10.0;
    double handshake = 5.0;
    double identityPrompt = 15.0;
};
void setTimeoutsForTesting(const TimeoutOverrides &overrides);
void resetTimeoutsForTesting();

// Session timings of both ends. Tests shorten them through setProtocolTimingsForTesting();
// production code never calls that.
struct ProtocolTimings {
    double heartbeatInterval = 15.0;     // one heartbeat per interval each way
    int silentIntervals = 3;             // silence this many intervals fails the session
    double authenticationTimeout = 30.0; // server: time from accept to a successful login
    double backoffBase = 10.0;           // server: first wait after 5 failed logins
    double backoffMax = 3600.0;          // server: the wait doubles up to this
};
ProtocolTimings protocolTimings();
void setProtocolTimingsForTesting(const ProtocolTimings &timings);
void resetProtocolTimingsForTesting();

} // namespace ZEKT
