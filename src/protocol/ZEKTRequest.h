#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// One console-to-agent frame, decoded. Only the fields of its kind are meaningful.
struct ZEKTRequest {
    enum class Kind {
        hello,
        authenticate,
        heartbeat,
        heartbeatResponse,
        disconnect,
        screenCapture,
        startStreaming,
        stopStreaming,
        frameAck,
        mouseButton,
        mouseMove,
        key,
        fileBegin,
        fileChunk,
        fileEnd,
    };

    Kind kind = Kind::heartbeat;
    quint64 requestId = 0; // commands and file transfers

    QList<quint32> protocolVersions; // hello
    QString clientName;              // hello
    QString username;                // authenticate
    QString password;                // authenticate
    QString reason;                  // disconnect
    quint32 displayID = 0;           // screenCapture, startStreaming
    float quality = 0.0f;            // startStreaming
    double frameRate = 0.0;          // startStreaming
    quint64 frameNumber = 0;         // frameAck
    double x = 0.0;                  // mouseButton, mouseMove
    double y = 0.0;
    double deltaX = 0.0; // mouseMove
    double deltaY = 0.0;
    int button = 0;       // mouseButton
    bool pressed = false; // mouseButton, key
    quint16 keyCode = 0;  // key
    quint32 modifiers = 0;
    QString fileName; // fileBegin
    qint64 fileSize = 0;
    QByteArray data;   // fileChunk
    QByteArray sha256; // fileEnd, 32 bytes
};
