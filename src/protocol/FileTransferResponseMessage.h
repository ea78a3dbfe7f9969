#pragma once

#include "ZEKTMessage.h"

// The agent's final word on an uploaded file.
class FileTransferResponseMessage : public ZEKTMessage {
public:
    FileTransferResponseMessage(bool success, QString message)
        : success(success), message(std::move(message))
    {
    }

    Type type() const override { return Type::fileTransferResponse; }
    QString typeName() const override { return QStringLiteral("FileTransferResponseMessage"); }

    bool success;
    QString message;
};
