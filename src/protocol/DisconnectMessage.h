#pragma once

#include "ZEKTMessage.h"

// The agent is closing the session.
class DisconnectMessage : public ZEKTMessage {
public:
    explicit DisconnectMessage(QString reason) : reason(std::move(reason)) {}

    Type type() const override { return Type::disconnect; }
    QString typeName() const override { return QStringLiteral("DisconnectMessage"); }

    QString reason;
};
