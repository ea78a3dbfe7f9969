#pragma once

#include <QString>
#include <memory>

// Every message the client delivers to its message handler. Messages are immutable
// records; a switch on type() tells them apart, so the compiler names a kind that a
// dispatcher forgot.
class ZEKTMessage {
public:
    enum class Type {
        handshakeResponse,
        authenticationResponse,
        commandResult,
        screenCapture,
        systemStats,
        error,
        fileReady,
        fileTransferResponse,
        heartbeat,
        heartbeatResponse,
        disconnect,
    };

    virtual ~ZEKTMessage() = default;
    virtual Type type() const = 0;
    // Stable name of the concrete type, e.g. "ScreenCaptureMessage".
    virtual QString typeName() const = 0;
};

using ZEKTMessagePtr = std::shared_ptr<const ZEKTMessage>;
