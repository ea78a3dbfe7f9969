#include "ZEKTServer.h"

#include "ZEKTServerContext.h"
#include "ZEKTServerSession.h"

#include <QTcpSocket>

class ZEKTServer::Private {
public:
    explicit Private(ZEKTServer *server) : context(server) {}
    ZEKTServerContext context;
    QString listenError;
};

ZEKTServer::ZEKTServer(ZEKTServerConfig config, QObject *parent)
    : QTcpServer(parent), d(std::make_unique<Private>(this))
{
    d->context.config = std::move(config);
    d->context.workers.setMaxThreadCount(qMax(1, d->context.config.workerThreads));
    d->context.inputQueue.setMaxThreadCount(1);
    d->context.fileQueue.setMaxThreadCount(1);
}

ZEKTServer::~ZEKTServer()
{
    // Sessions first: they use the context, and their workers' results are dropped.
    const auto sessions = findChildren<ZEKTServerSession *>(Qt::FindDirectChildrenOnly);
    for (ZEKTServerSession *session : sessions)
        delete session;
}

void ZEKTServer::setCredentialVerifier(std::shared_ptr<ZEKTCredentialVerifier> verifier)
{
    d->context.verifier = std::move(verifier);
}
void ZEKTServer::setStatsProvider(std::shared_ptr<ZEKTStatsProvider> provider)
{
    d->context.stats = std::move(provider);
}
void ZEKTServer::setScreenProvider(std::shared_ptr<ZEKTScreenProvider> provider)
{
    d->context.screen = std::move(provider);
}
void ZEKTServer::setInputProvider(std::shared_ptr<ZEKTInputProvider> provider)
{
    d->context.input = std::move(provider);
}
void ZEKTServer::setFileReceiver(std::shared_ptr<ZEKTFileReceiver> receiver)
{
    d->context.files = std::move(receiver);
}
void ZEKTServer::setLogFunction(LogFunction function)
{
    d->context.logFunction = std::move(function);
}

bool ZEKTServer::listen()
{
    if (d->context.config.identity.isNull()) {
        d->listenError = tr("The agent identity is not loaded");
        return false;
    }
    d->listenError.clear();
    if (!QTcpServer::listen(d->context.config.bindAddress, d->context.config.port))
        return false;
    d->context.log(tr("Listening on %1:%2").arg(serverAddress().toString()).arg(serverPort()),
                   QStringLiteral("CONNECT"));
    return true;
}

void ZEKTServer::stop(const QString &reason)
{
    close();
    const auto sessions = findChildren<ZEKTServerSession *>(Qt::FindDirectChildrenOnly);
    for (ZEKTServerSession *session : sessions)
        session->close(reason, true);
}

QString ZEKTServer::errorString() const
{
    return d->listenError.isEmpty() ? QTcpServer::errorString() : d->listenError;
}

const ZEKTServerConfig &ZEKTServer::config() const
{
    return d->context.config;
}
int ZEKTServer::sessionCount() const
{
    return d->context.authenticated + d->context.unauthenticated;
}
int ZEKTServer::authenticatedSessionCount() const
{
    return d->context.authenticated;
}

void ZEKTServer::incomingConnection(qintptr socketDescriptor)
{
    if (d->context.unauthenticated >= d->context.config.maxUnauthenticatedConnections) {
        QTcpSocket socket;
        socket.setSocketDescriptor(socketDescriptor);
        d->context.log(tr("Refused a connection from %1: too many unauthenticated connections")
                           .arg(socket.peerAddress().toString()),
                       QStringLiteral("WARN"));
        socket.abort();
        return;
    }
    ++d->context.unauthenticated;
    new ZEKTServerSession(socketDescriptor, &d->context, this);
}
