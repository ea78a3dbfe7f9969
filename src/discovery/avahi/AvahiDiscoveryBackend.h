#pragma once

#include "discovery/DiscoveryBackend.h"

#include <chrono>
#include <memory>

class AvahiBrowseWorker;

// DNS-SD through the Avahi daemon. Every Avahi call runs on the worker's thread, started on
// the first browse; this object only queues commands to it and re-emits its reports on the
// main thread.
class AvahiDiscoveryBackend : public DiscoveryBackend {
    Q_OBJECT

public:
    // How long destruction waits for a worker stuck in a stalled daemon call.
    static constexpr std::chrono::milliseconds shutdownGrace{2000};

    explicit AvahiDiscoveryBackend(QObject *parent = nullptr);
    ~AvahiDiscoveryBackend() override;

    void startBrowse(quint64 browse, const QString &type, const QString &domain) override;
    void stopBrowse(quint64 browse) override;
    void resolve(quint64 browse, quint64 resolution, const ServiceInstance &service) override;
    void cancelResolve(quint64 resolution) override;

private:
    std::shared_ptr<AvahiBrowseWorker> m_worker;
};
