#pragma once

#include "discovery/DiscoveryBackend.h"

#include <QHash>
#include <QStringList>

// A DNS-SD backend driven by the test: it records what it was asked and reports what the
// test tells it to, at once (the manager queues what it hears).
class ScriptedDiscoveryBackend : public DiscoveryBackend {
    Q_OBJECT

public:
    // "browse 1", "stop 1", "resolve Alpha", "cancel Alpha", in call order.
    QStringList calls;
    quint64 browse = 0;                        // the last browse started
    QHash<quint64, ServiceInstance> resolving; // running resolutions

    void startBrowse(quint64 browse, const QString &type, const QString &domain) override;
    void stopBrowse(quint64 browse) override;
    void resolve(quint64 browse, quint64 resolution, const ServiceInstance &service) override;
    void cancelResolve(quint64 resolution) override;

    // Reports for the last browse (or `olderBrowse`); a copy is named by interface and
    // protocol.
    void found(const QString &name, int interfaceIndex = 2, int protocol = 0,
               quint64 olderBrowse = 0);
    void removed(const QString &name, int interfaceIndex = 2, int protocol = 0);
    // Answers the running resolution of `name`.
    void resolved(const QString &name, const QString &host, int port,
                  const QList<QByteArray> &txt = {});
    void failed(const QString &name);
    // The running resolution of `name`, 0 when none.
    quint64 resolutionOf(const QString &name) const;
};
