#pragma once

#include "ZEKTServerConfig.h"

#include <QTcpServer>
#include <functional>
#include <memory>

class ZEKTCredentialVerifier;
class ZEKTFileReceiver;
class ZEKTInputProvider;
class ZEKTScreenProvider;
class ZEKTStatsProvider;

// The agent end of the session protocol: a TLS 1.3 listener that runs handshake,
// authentication, heartbeats, commands, streaming, statistics and file reception, and
// hands the real work to the providers on worker threads.
//
// Lives on the thread that created it (which needs an event loop); every session runs on
// that thread. Providers are shared so a worker still busy after stop() stays valid.
class ZEKTServer : public QTcpServer {
    Q_OBJECT
public:
    using LogFunction = std::function<void(const QString &message, const QString &category)>;

    explicit ZEKTServer(ZEKTServerConfig config, QObject *parent = nullptr);
    ~ZEKTServer() override;

    // Set before listen(). Without a verifier every login is refused; without a provider
    // the matching commands fail with a readable reason.
    void setCredentialVerifier(std::shared_ptr<ZEKTCredentialVerifier> verifier);
    void setStatsProvider(std::shared_ptr<ZEKTStatsProvider> provider);
    void setScreenProvider(std::shared_ptr<ZEKTScreenProvider> provider);
    void setInputProvider(std::shared_ptr<ZEKTInputProvider> provider);
    void setFileReceiver(std::shared_ptr<ZEKTFileReceiver> receiver);
    // Diagnostics, categories from the log's closed list; called on the server's thread.
    void setLogFunction(LogFunction function);

    // Listens on the configured address and port; false with errorString() on failure.
    bool listen();
    QString errorString() const;
    // Sends a DisconnectMessage with `reason` to every session, closes them and stops
    // listening.
    void stop(const QString &reason);

    const ZEKTServerConfig &config() const;
    int sessionCount() const;
    int authenticatedSessionCount() const;

Q_SIGNALS:
    void sessionAuthenticated(const QString &peer, const QString &username);
    void sessionClosed(const QString &peer, const QString &reason);

protected:
    void incomingConnection(qintptr socketDescriptor) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
