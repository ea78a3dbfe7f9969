#pragma once

#include "ZEKTFrameReader.h"
#include "ZEKTMessage.h"
#include "ZEKTRequest.h"

#include <QSslSocket>

// Speaks the wire protocol frame by frame, to send what the client library never would
// (commands before login, a wrong digest).
class RawAgentConnection {
public:
    bool open(quint16 port);
    void send(const ZEKTRequest &request);
    // The next message from the agent, or null when none came or the session closed.
    ZEKTMessagePtr next(int timeoutMs = 10000);
    // The next message of type `typeName`, skipping others (heartbeats, statistics).
    ZEKTMessagePtr nextOf(const QString &typeName, int timeoutMs = 10000);
    bool waitClosed(int timeoutMs = 10000);
    // hello + authenticate; true when the agent accepted.
    bool login(const QString &user, const QString &password);

private:
    QSslSocket m_socket;
    ZEKTFrameReader m_reader;
};
