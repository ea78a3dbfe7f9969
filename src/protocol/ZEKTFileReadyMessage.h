#pragma once

#include "ZEKTMessage.h"

// The agent's accept or refusal of an announced upload, sent before any of its data;
// consumed by the client library and never delivered to the message handler.
class ZEKTFileReadyMessage : public ZEKTMessage {
public:
    ZEKTFileReadyMessage(quint64 transferId, bool accepted, QString reason = {})
        : transferId(transferId), accepted(accepted), reason(std::move(reason))
    {
    }

    Type type() const override { return Type::fileReady; }
    QString typeName() const override { return QStringLiteral("ZEKTFileReadyMessage"); }

    quint64 transferId;
    bool accepted;
    QString reason;
};
