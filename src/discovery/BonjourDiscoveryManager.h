#pragma once

#include "DiscoveredServer.h"
#include "ServiceInstance.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <chrono>
#include <memory>
#include <optional>

class DiscoveryBackend;

// Finds the agents that announce themselves on the local network and keeps the list of
// those resolved, for the add form. One per process, made beside AppState; main thread only.
//
// The backend reports every copy of a service (per interface and IP protocol); the manager
// keeps, per instance name, its copies and what it resolved to, resolves each name once,
// at most `maxResolutionsInFlight` at a time, and forgets a name when its last copy goes.
// Results of a browse that was stopped or replaced are dropped.
class BonjourDiscoveryManager : public QObject {
    Q_OBJECT

public:
    static constexpr int maxResolutionsInFlight = 32;
    // The daemon gives up on a resolution after 5 s by itself; this only guards against
    // one that never answers.
    static constexpr std::chrono::milliseconds resolveTimeout{5000};

    explicit BonjourDiscoveryManager(std::unique_ptr<DiscoveryBackend> backend,
                                     QObject *parent = nullptr);
    ~BonjourDiscoveryManager() override;

    static QString serviceType() { return QStringLiteral("_zekt._tcp"); }
    static QString serviceDomain() { return QStringLiteral("local."); }

    // In order of (latest) resolution; one entry per host and port.
    const QList<DiscoveredServer> &discoveredServers() const { return m_discoveredServers; }
    bool isDiscovering() const { return m_isDiscovering; }

    // Starts a browse unless one runs; the list is emptied through the event queue, the
    // flag is set at once.
    void startDiscovery();
    // Ends the browse; the flag clears through the event queue, the list is kept.
    void stopDiscovery();

Q_SIGNALS:
    void discoveredServersChanged();
    void isDiscoveringChanged();

private:
    enum class ResolveState { waiting, resolving, done };
    struct Service {
        QList<ServiceInstance> copies;
        ResolveState state = ResolveState::waiting;
        quint64 resolution = 0;
        ServiceInstance resolvingCopy;
        std::optional<DiscoveredServer> server; // resolved with a host name
    };

    void serviceFound(quint64 browse, const ServiceInstance &copy);
    void serviceRemoved(quint64 browse, const ServiceInstance &copy);
    void serviceResolved(quint64 resolution, const QString &host, int port,
                         const QList<QByteArray> &txt);
    void resolutionEnded(quint64 resolution, bool cancelInBackend);
    void browseEnded(quint64 browse, const QString &logLine);

    void startResolving(const QString &name, Service &service);
    void startWaitingResolutions();
    void forgetBrowse();
    void setDiscovering(bool isDiscovering);
    void setServers(QList<DiscoveredServer> servers);

    std::unique_ptr<DiscoveryBackend> m_backend;
    QList<DiscoveredServer> m_discoveredServers;
    bool m_isDiscovering = false;

    quint64 m_browse = 0; // the running browse, 0 when none
    quint64 m_lastBrowse = 0;
    quint64 m_lastResolution = 0;
    QHash<QString, Service> m_services;    // by instance name
    QList<QString> m_waiting;              // names waiting for a free resolution slot
    QHash<quint64, QString> m_resolutions; // running resolutions → instance name
};
