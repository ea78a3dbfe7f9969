#pragma once

#include "ZEKTMessage.h"

// The agent's answer to the handshake: the negotiated protocol version and its own version.
class HandshakeResponseMessage : public ZEKTMessage {
public:
    HandshakeResponseMessage(quint32 protocolVersion, QString agentVersion)
        : protocolVersion(protocolVersion), agentVersion(std::move(agentVersion))
    {
    }

    Type type() const override { return Type::handshakeResponse; }
    QString typeName() const override { return QStringLiteral("HandshakeResponseMessage"); }

    quint32 protocolVersion;
    QString agentVersion;
};
