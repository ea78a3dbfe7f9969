#pragma once

#include "ZEKTIdentity.h"

#include <QHostAddress>
#include <QString>

// Settings of a ZEKTServer; the identity must be loaded before the server listens.
struct ZEKTServerConfig {
    QHostAddress bindAddress = QHostAddress::Any;
    quint16 port = 5905; // 0 picks a free port (tests)
    double statsIntervalSeconds = 5.0;
    ZEKTIdentity identity;
    QString agentVersion = QStringLiteral("0.1.0");
    int maxUnauthenticatedConnections = 10;
    int workerThreads = 4; // provider calls (verifier, stats, screen, file decisions)
};
