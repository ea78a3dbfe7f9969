#pragma once

#include "ZEKTLoginBackoff.h"
#include "ZEKTServer.h"

#include <QThreadPool>

// What the sessions of one ZEKTServer share; used on the server's thread only, except for
// the providers and pools, which workers use.
struct ZEKTServerContext {
    explicit ZEKTServerContext(ZEKTServer *server) : server(server) {}

    ZEKTServer *server;
    ZEKTServerConfig config;
    std::shared_ptr<ZEKTCredentialVerifier> verifier;
    std::shared_ptr<ZEKTStatsProvider> stats;
    std::shared_ptr<ZEKTScreenProvider> screen;
    std::shared_ptr<ZEKTInputProvider> input;
    std::shared_ptr<ZEKTFileReceiver> files;
    ZEKTServer::LogFunction logFunction;
    ZEKTLoginBackoff backoff;
    QThreadPool workers;
    QThreadPool inputQueue; // one thread: input events keep their order
    QThreadPool fileQueue;  // one thread: upload chunks keep their order
    int unauthenticated = 0;
    int authenticated = 0;

    void log(const QString &text, const QString &category) const
    {
        if (logFunction)
            logFunction(text, category);
    }
};
