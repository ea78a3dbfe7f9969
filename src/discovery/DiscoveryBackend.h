#pragma once

#include "ServiceInstance.h"

#include <QByteArray>
#include <QList>
#include <QObject>

// The DNS-SD library as BonjourDiscoveryManager sees it. Calls are made on the main thread
// and must return at once; results come back as the signals below, on the main thread,
// tagged with the browse or resolution they belong to, so a caller can drop what belongs to
// one it has given up. A backend reports each service copy (interface, protocol) on its own.
class DiscoveryBackend : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void startBrowse(quint64 browse, const QString &type, const QString &domain) = 0;
    // Ends the browse and every resolution started under it; nothing more is reported
    // for them.
    virtual void stopBrowse(quint64 browse) = 0;
    virtual void resolve(quint64 browse, quint64 resolution, const ServiceInstance &service) = 0;
    // Nothing more is reported for that resolution.
    virtual void cancelResolve(quint64 resolution) = 0;

Q_SIGNALS:
    void serviceFound(quint64 browse, const ServiceInstance &service);
    void serviceRemoved(quint64 browse, const ServiceInstance &service);
    // The browse never started (no daemon, no system bus); `reason` is for the log.
    void browseCouldNotStart(quint64 browse, const QString &reason);
    // A running browse ended by itself (the daemon went away, the browser failed).
    void browseStopped(quint64 browse, const QString &reason);
    // `port` as the library gave it; `txt` the raw TXT items in record order, empty when
    // the service has none.
    void serviceResolved(quint64 resolution, const QString &host, int port,
                         const QList<QByteArray> &txt);
    void resolveFailed(quint64 resolution);
};
