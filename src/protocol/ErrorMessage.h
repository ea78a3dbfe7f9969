#pragma once

#include "ZEKTMessage.h"

// An error reported by the agent.
class ErrorMessage : public ZEKTMessage {
public:
    explicit ErrorMessage(QString errorMessage) : errorMessage(std::move(errorMessage)) {}

    Type type() const override { return Type::error; }
    QString typeName() const override { return QStringLiteral("ErrorMessage"); }

    QString errorMessage;
};
