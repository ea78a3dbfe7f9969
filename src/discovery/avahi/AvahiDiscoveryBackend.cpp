#include "AvahiDiscoveryBackend.h"

#include "AvahiBrowseWorker.h"

AvahiDiscoveryBackend::AvahiDiscoveryBackend(QObject *parent) : DiscoveryBackend(parent) {}

AvahiDiscoveryBackend::~AvahiDiscoveryBackend()
{
    if (m_worker) {
        m_worker->detachOwner();
        m_worker->shutDown(shutdownGrace);
    }
}

void AvahiDiscoveryBackend::startBrowse(quint64 browse, const QString &type, const QString &domain)
{
    if (!m_worker)
        m_worker = AvahiBrowseWorker::start(this);
    if (!m_worker) {
        QMetaObject::invokeMethod(
            this,
            [this, browse] {
                Q_EMIT browseCouldNotStart(browse,
                                           QStringLiteral("no thread for the DNS-SD client"));
            },
            Qt::QueuedConnection);
        return;
    }
    m_worker->post([browse, type = type.toUtf8(), domain = domain.toUtf8()](
                       AvahiBrowseWorker &worker) { worker.startBrowse(browse, type, domain); });
}

void AvahiDiscoveryBackend::stopBrowse(quint64 browse)
{
    if (m_worker)
        m_worker->post([browse](AvahiBrowseWorker &worker) { worker.stopBrowse(browse); });
}

void AvahiDiscoveryBackend::resolve(quint64 browse, quint64 resolution,
                                    const ServiceInstance &service)
{
    if (m_worker)
        m_worker->post([browse, resolution, service](AvahiBrowseWorker &worker) {
            worker.resolve(browse, resolution, service);
        });
}

void AvahiDiscoveryBackend::cancelResolve(quint64 resolution)
{
    if (m_worker)
        m_worker->post(
            [resolution](AvahiBrowseWorker &worker) { worker.cancelResolve(resolution); });
}
