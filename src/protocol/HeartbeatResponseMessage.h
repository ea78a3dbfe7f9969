#pragma once

#include "ZEKTMessage.h"

// The agent's answer to the console's heartbeat.
class HeartbeatResponseMessage : public ZEKTMessage {
public:
    Type type() const override { return Type::heartbeatResponse; }
    QString typeName() const override { return QStringLiteral("HeartbeatResponseMessage"); }
};
