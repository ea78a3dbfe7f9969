#pragma once

#include "ZEKTMessage.h"

// Verdict on one authentication attempt; a refusal carries a readable reason.
class AuthenticationResponseMessage : public ZEKTMessage {
public:
    AuthenticationResponseMessage(bool success, QString reason = {})
        : success(success), reason(std::move(reason))
    {
    }

    Type type() const override { return Type::authenticationResponse; }
    QString typeName() const override { return QStringLiteral("AuthenticationResponseMessage"); }

    bool success;
    QString reason;
};
