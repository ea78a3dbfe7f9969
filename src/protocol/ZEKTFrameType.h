#pragma once

#include <QtGlobal>

// Wire type of a frame. Console-to-agent types are below 64, agent-to-console types from
// 64 on; heartbeats and disconnects travel both ways. Numbers never change meaning.
enum class ZEKTFrameType : quint16 {
    // both ways
    heartbeat = 3,
    heartbeatResponse = 4,
    disconnect = 5,
    // console to agent
    hello = 1,
    authenticate = 2,
    screenCapture = 10,
    startStreaming = 11,
    stopStreaming = 12,
    frameAck = 13,
    mouseButton = 20,
    mouseMove = 21,
    key = 22,
    fileBegin = 30,
    fileChunk = 31,
    fileEnd = 32,
    // agent to console
    handshakeResponse = 64,
    authenticationResponse = 65,
    commandResult = 66,
    screenImage = 67,
    systemStats = 68,
    error = 69,
    fileReady = 70,
    fileResponse = 71,
};
