#pragma once

#include "model/RemoteComputer.h"
#include "model/SystemStats.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>
#include <optional>

// The computer store as the session layer sees it; AppState implements it. The session
// manager reports back only through these calls, on the main thread unless a call says
// otherwise, and a manager without a store talks to one that knows no computer and ignores
// every call.
class SessionStore {
public:
    virtual ~SessionStore() = default;

    // Queries, answered at once.
    virtual const QList<RemoteComputer> &computers() const = 0;
    virtual std::optional<QString> computerDisplayName(const QUuid &id) const = 0;

    // Connection status.
    virtual void updateConnectingStatus(const QUuid &id, bool isConnecting) = 0;
    virtual void updateConnectionStatus(const QUuid &id, bool isConnected,
                                        const std::optional<QString> &error = std::nullopt) = 0;
    // A statistics report replaces the computer's last statistics.
    virtual void applySystemStats(const QUuid &id, const SystemStats &stats) = 0;
    // Any thread.
    virtual void storeThumbnail(const QUuid &id, const QByteArray &data) = 0;

    // The upload display state; any thread, applied on the main thread in call order.
    virtual void beginFileTransfer(const QString &fileName) = 0;
    virtual void updateFileTransferProgress(const QString &status, double fraction) = 0;
    virtual void completeFileTransfer(const QString &message) = 0;
};
