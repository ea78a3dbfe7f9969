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

} // namespace ZEKT
