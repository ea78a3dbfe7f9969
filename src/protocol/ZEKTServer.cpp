#include "ZEKTServer.h"

#include "ZEKTCredentialVerifier.h"
#include "ZEKTFileReceiver.h"
#include "ZEKTInputProvider.h"
#include "ZEKTScreenProvider.h"
#include "ZEKTStatsProvider.h"

#include <QTcpSocket>

class ZEKTServer::Private {
public:
    ZEKTServerConfig config;
    std::shared_ptr<ZEKTCredentialVerifier> verifier;
    std::shared_ptr<ZEKTStatsProvider> stats;
    std::shared_ptr<ZEKTScreenProvider> screen;
    std::shared_ptr<ZEKTInputProvider> input;
    std::shared_ptr<ZEKTFileReceiver> files;
    LogFunction log;
};

ZEKTServer::ZEKTServer(ZEKTServerConfig config, QObject *parent)
    : QTcpServer(parent), d(std::make_unique<Private>())
{
    d->config = std::move(config);
}

ZEKTServer::~ZEKTServer() = default;

void ZEKTServer::setCredentialVerifier(std::shared_ptr<ZEKTCredentialVerifier> verifier)
{
    d->verifier = std::move(verifier);
}
void ZEKTServer::setStatsProvider(std::shared_ptr<ZEKTStatsProvider> provider)
{
    d->stats = std::move(provider);
}
void ZEKTServer::setScreenProvider(std::shared_ptr<ZEKTScreenProvider> provider)
{
    d->screen = std::move(provider);
}
void ZEKTServer::setInputProvider(std::shared_ptr<ZEKTInputProvider> provider)
{
    d->input = std::move(provider);
}
void ZEKTServer::setFileReceiver(std::shared_ptr<ZEKTFileReceiver> receiver)
{
    d->files = std::move(receiver);
}
void ZEKTServer::setLogFunction(LogFunction function)
{
    d->log = std::move(function);
}

bool ZEKTServer::listen()
{
    return QTcpServer::listen(d->config.bindAddress, d->config.port);
}

void ZEKTServer::stop(const QString &reason)
{
    Q_UNUSED(reason);
    close();
}

const ZEKTServerConfig &ZEKTServer::config() const
{
    return d->config;
}
int ZEKTServer::sessionCount() const
{
    return 0;
}
int ZEKTServer::authenticatedSessionCount() const
{
    return 0;
}

void ZEKTServer::incomingConnection(qintptr socketDescriptor)
{
    // Sessions are not wired yet: refuse the connection.
    QTcpSocket socket;
    socket.setSocketDescriptor(socketDescriptor);
    socket.abort();
}
