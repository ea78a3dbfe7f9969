#include "BonjourDiscoveryManager.h"

#include "DiscoveryBackend.h"
#include "ServiceTxtRecord.h"
#include "model/LogManager.h"

#include <QTimer>
#include <limits>

BonjourDiscoveryManager::BonjourDiscoveryManager(std::unique_ptr<DiscoveryBackend> backend,
                                                 QObject *parent)
    : QObject(parent), m_backend(std::move(backend))
{
    // Queued even when a backend reports from inside a call, so every change of the
    // published fields runs in a turn of its own, after the call that caused it.
    const auto queued = Qt::QueuedConnection;
    connect(m_backend.get(), &DiscoveryBackend::serviceFound, this,
            &BonjourDiscoveryManager::serviceFound, queued);
    connect(m_backend.get(), &DiscoveryBackend::serviceRemoved, this,
            &BonjourDiscoveryManager::serviceRemoved, queued);
    connect(m_backend.get(), &DiscoveryBackend::serviceResolved, this,
            &BonjourDiscoveryManager::serviceResolved, queued);
    connect(
        m_backend.get(), &DiscoveryBackend::resolveFailed, this,
        [this](quint64 resolution) { resolutionEnded(resolution, false); }, queued);
    connect(
        m_backend.get(), &DiscoveryBackend::browseCouldNotStart, this,
        [this](quint64 browse, const QString &reason) {
            browseEnded(browse, QStringLiteral("Local network search could not start: ") + reason);
        },
        queued);
    connect(
        m_backend.get(), &DiscoveryBackend::browseStopped, this,
        [this](quint64 browse, const QString &reason) {
            browseEnded(browse, QStringLiteral("Local network search stopped: ") + reason);
        },
        queued);
}

BonjourDiscoveryManager::~BonjourDiscoveryManager()
{
    if (m_browse)
        m_backend->stopBrowse(m_browse);
}

void BonjourDiscoveryManager::startDiscovery()
{
    if (m_isDiscovering)
        return;
    QMetaObject::invokeMethod(
        this, [this] { setServers({}); }, Qt::QueuedConnection);
    forgetBrowse();
    m_browse = ++m_lastBrowse;
    m_backend->startBrowse(m_browse, serviceType(), serviceDomain());
    setDiscovering(true);
}

void BonjourDiscoveryManager::stopDiscovery()
{
    if (!m_isDiscovering)
        return;
    if (m_browse)
        m_backend->stopBrowse(m_browse);
    forgetBrowse();
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_browse)
                setDiscovering(false);
        },
        Qt::QueuedConnection);
}

void BonjourDiscoveryManager::serviceFound(quint64 browse, const ServiceInstance &copy)
{
    if (!m_browse || browse != m_browse)
        return;
    const bool isNew = !m_services.contains(copy.name);
    Service &service = m_services[copy.name];
    if (!service.copies.contains(copy))
        service.copies.append(copy);
    if (isNew) {
        m_waiting.append(copy.name);
        startWaitingResolutions();
    }
}

void BonjourDiscoveryManager::serviceRemoved(quint64 browse, const ServiceInstance &copy)
{
    if (!m_browse || browse != m_browse)
        return;
    const auto it = m_services.find(copy.name);
    if (it == m_services.end())
        return;
    Service &service = *it;
    service.copies.removeAll(copy);
    if (service.state == ResolveState::resolving && service.resolvingCopy == copy) {
        m_backend->cancelResolve(service.resolution);
        m_resolutions.remove(service.resolution);
        service.state = ResolveState::waiting;
        if (!service.copies.isEmpty()) {
            startResolving(copy.name, service); // through a copy that is still there
            return;
        }
    }
    if (!service.copies.isEmpty())
        return;

    // The last copy went: the service is gone.
    m_waiting.removeOne(copy.name);
    const std::optional<DiscoveredServer> gone = service.server;
    m_services.erase(it);
    startWaitingResolutions();

    QList<DiscoveredServer> servers = m_discoveredServers;
    if (gone) {
        // Every row with its host and port goes, also one another name resolved to.
        servers.removeIf([&gone](const DiscoveredServer &s) { return s == *gone; });
    } else {
        servers.removeIf([&copy](const DiscoveredServer &s) { return s.name() == copy.name; });
    }
    setServers(std::move(servers));
}

void BonjourDiscoveryManager::serviceResolved(quint64 resolution, const QString &host, int port,
                                              const QList<QByteArray> &txt)
{
    const auto it = m_resolutions.constFind(resolution);
    if (it == m_resolutions.constEnd())
        return; // cancelled, timed out or of an older browse
    const QString name = *it;
    resolutionEnded(resolution, false);
    if (host.isEmpty() || port < 0 || port > std::numeric_limits<quint16>::max())
        return;
    const ServiceTxtRecord record = ServiceTxtRecord::read(txt);
    const DiscoveredServer server(name, host, quint16(port), record.name, record.hostname,
                                  record.version);
    m_services[name].server = server;
    QList<DiscoveredServer> servers = m_discoveredServers;
    servers.removeIf([&server](const DiscoveredServer &s) { return s == server; });
    servers.append(server);
    setServers(std::move(servers));
}

void BonjourDiscoveryManager::resolutionEnded(quint64 resolution, bool cancelInBackend)
{
    const auto found = m_resolutions.constFind(resolution);
    if (found == m_resolutions.constEnd())
        return;
    const QString name = *found;
    m_resolutions.erase(found);
    if (cancelInBackend)
        m_backend->cancelResolve(resolution);
    if (const auto it = m_services.find(name); it != m_services.end())
        it->state = ResolveState::done; // resolved or not, a name is resolved once
    startWaitingResolutions();
}

void BonjourDiscoveryManager::browseEnded(quint64 browse, const QString &logLine)
{
    if (!m_browse || browse != m_browse)
        return;
    LogManager::shared().log(logLine, QStringLiteral("WARN"));
    m_backend->stopBrowse(m_browse);
    forgetBrowse();
    setDiscovering(false);
}

void BonjourDiscoveryManager::startResolving(const QString &name, Service &service)
{
    service.state = ResolveState::resolving;
    service.resolution = ++m_lastResolution;
    service.resolvingCopy = service.copies.first();
    m_resolutions.insert(service.resolution, name);
    m_backend->resolve(m_browse, service.resolution, service.resolvingCopy);
    const quint64 resolution = service.resolution;
    QTimer::singleShot(resolveTimeout, this,
                       [this, resolution] { resolutionEnded(resolution, true); });
}

void BonjourDiscoveryManager::startWaitingResolutions()
{
    while (m_resolutions.size() < maxResolutionsInFlight && !m_waiting.isEmpty()) {
        const QString name = m_waiting.takeFirst();
        const auto it = m_services.find(name);
        if (it != m_services.end() && it->state == ResolveState::waiting)
            startResolving(name, *it);
    }
}

void BonjourDiscoveryManager::forgetBrowse()
{
    m_browse = 0;
    m_services.clear();
    m_waiting.clear();
    m_resolutions.clear();
}

void BonjourDiscoveryManager::setDiscovering(bool isDiscovering)
{
    if (m_isDiscovering == isDiscovering)
        return;
    m_isDiscovering = isDiscovering;
    Q_EMIT isDiscoveringChanged();
}

void BonjourDiscoveryManager::setServers(QList<DiscoveredServer> servers)
{
    // By id: a re-resolved server equals its old entry but is a new one.
    const auto sameIds = [](const DiscoveredServer &a, const DiscoveredServer &b) {
        return a.id() == b.id();
    };
    if (std::equal(servers.begin(), servers.end(), m_discoveredServers.begin(),
                   m_discoveredServers.end(), sameIds))
        return;
    m_discoveredServers = std::move(servers);
    Q_EMIT discoveredServersChanged();
}
