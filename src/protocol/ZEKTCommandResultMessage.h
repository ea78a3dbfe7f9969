#pragma once

#include "ZEKTMessage.h"

// The agent's answer to one command; consumed by the client library (it settles the
// command's future) and never delivered to the message handler.
class ZEKTCommandResultMessage : public ZEKTMessage {
public:
    ZEKTCommandResultMessage(quint64 requestId, bool success, QString error = {})
        : requestId(requestId), success(success), error(std::move(error))
    {
    }

    Type type() const override { return Type::commandResult; }
    QString typeName() const override { return QStringLiteral("ZEKTCommandResultMessage"); }

    quint64 requestId;
    bool success;
    QString error;
};
