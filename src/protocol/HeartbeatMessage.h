#pragma once

#include "ZEKTMessage.h"

// Keep-alive sent by the agent; only its arrival matters.
class HeartbeatMessage : public ZEKTMessage {
public:
    Type type() const override { return Type::heartbeat; }
    QString typeName() const override { return QStringLiteral("HeartbeatMessage"); }
};
