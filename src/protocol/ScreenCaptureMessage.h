#pragma once

#include "ZEKTMessage.h"

#include <QByteArray>
#include <optional>

class ScreenCaptureMessage : public ZEKTMessage {
public:
    ScreenCaptureMessage(quint32 displayID, QByteArray imageData, QString imageFormat,
                         float quality, quint64 frameNumber, std::optional<quint32> sequenceNumber,
                         quint32 displayWidth, quint32 displayHeight)
        : displayID(displayID), imageData(std::move(imageData)),
          imageFormat(std::move(imageFormat)), quality(quality), frameNumber(frameNumber),
          sequenceNumber(sequenceNumber), displayWidth(displayWidth), displayHeight(displayHeight)
    {
    }

    Type type() const override { return Type::screenCapture; }
    QString typeName() const override { return QStringLiteral("ScreenCaptureMessage"); }

    quint32 displayID;
    QByteArray imageData;
    QString imageFormat;
    float quality;
    quint64 frameNumber;
    std::optional<quint32> sequenceNumber;
    quint32 displayWidth;
    quint32 displayHeight;
};
