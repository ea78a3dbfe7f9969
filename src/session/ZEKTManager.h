#pragma once

#include "model/Error.h"
#include "model/RemoteComputer.h"
#include "protocol/NetworkState.h"
#include "protocol/ZEKTMessage.h"
#include "session/ScreenImageDecoder.h"
#include "session/SessionStore.h"
#include "session/Thumbnailer.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUuid>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class AlertPresenter;
class ConnectionAttempt;
class ManagerLifeline;
class QSemaphore;
class ScreenCaptureMessage;
class SystemStatsMessage;
class TOFUPromptDecision;
class ZEKTClient;

// The session manager: at most one protocol client per computer; connecting, message
// dispatch, screen images, identity trust and commands. Entry points are called on the
// main thread; library callbacks are moved there before they touch any state.
// The commands are virtual so that tests of the layers above can stand in for it.
class ZEKTManager : public QObject {
    Q_OBJECT

public:
    using ClientFactory =
        std::function<std::shared_ptr<ZEKTClient>(const QString &host, quint16 port)>;
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    // `clientFactory` makes the client of each attempt; by default the real one.
    explicit ZEKTManager(ClientFactory clientFactory = {}, QObject *parent = nullptr);
    ~ZEKTManager() override;

    // Non-owning back reference, set by the store right after it creates the manager and
    // cleared when the store goes.
    void setStore(SessionStore *store) { m_store = store; }
    // The store, or one that knows no computer and ignores every call.
    SessionStore &store() const;
    // Where alerts go; by default AlertPresenter::shared(). Without any, alerts are
    // answered as closed (an identity change is rejected) and logged.
    void setAlertPresenter(AlertPresenter *presenter) { m_alertPresenter = presenter; }

    virtual void connectToComputer(const RemoteComputer &computer);
    virtual void disconnectFromComputer(const RemoteComputer &computer);
    virtual void startRemoteControlStreaming(const RemoteComputer &computer, double frameRate);
    virtual void stopRemoteControlStreaming(const RemoteComputer &computer);
    virtual std::optional<Error> stopRemoteControlStreamingSync(const RemoteComputer &computer);
    virtual void requestManualPreview(const RemoteComputer &computer);
    virtual void sendFileTransfer(const RemoteComputer &computer, const QString &filePath,
                                  const std::optional<QString> &remoteFileName,
                                  bool deleteAfterTransfer);

    // Seconds one connection attempt may take: connection time-out + 2 × handshake
    // time-out + 10.
    static double connectionDeadline();

    // The files of the transfers under way (main thread).
    const QSet<QString> &uploadsUnderWay() const { return m_uploadsUnderWay; }

    // The live client of each computer (main thread).
    const QHash<QUuid, std::shared_ptr<ZEKTClient>> &clients() const { return m_clients; }
    std::shared_ptr<ZEKTClient> client(const QUuid &id) const { return m_clients.value(id); }

    // Snapshots of the per-computer state (any thread).
    bool isConnecting(const QUuid &id) const;
    bool isStreaming(const QUuid &id) const;
    bool isManualPreviewRequested(const QUuid &id) const;
    quint64 connectionGeneration(const QUuid &id) const;
    int networkDownErrorCount(const QUuid &id) const;

    // The display name of the stored record with that id, if any.
    std::optional<QString> computerDisplayName(const QUuid &id) const;

    // Asks the user whether to trust an agent's new identity; any thread. Off the main
    // thread it waits at most the prompt time-out plus one second for the answer.
    bool promptServerIdentityChange(const QString &label, const QString &previousFingerprint,
                                    const QString &newFingerprint);

    // Encoded thumbnail with the longest side `maximumDimension`; empty when impossible.
    QByteArray createThumbnail(const QImage &image, int maximumDimension) const;

    // Tests.
    void setClockForTesting(Clock clock) { m_clock = std::move(clock); }
    ScreenImageDecoder &screenImageDecoderForTesting() { return m_decoder; }
    Thumbnailer &thumbnailerForTesting() { return m_thumbnailer; }

Q_SIGNALS:
    void clientsChanged();

private:
    void setClient(const QUuid &id, std::shared_ptr<ZEKTClient> client);
    void removeClient(const QUuid &id);
    // Shared first step of both stop variants: log it and stop accepting streamed frames.
    void stopWantingStream(const QUuid &id, const QString &label);
    void runAttempt(const std::shared_ptr<ConnectionAttempt> &attempt);
    void attemptFinished(const std::shared_ptr<ConnectionAttempt> &attempt,
                         const std::optional<QString> &error);
    void removeConnectionTask(const std::shared_ptr<ConnectionAttempt> &attempt);
    bool isCurrentGeneration(const QUuid &id, quint64 generation) const;
    void installHandlers(const std::shared_ptr<ZEKTClient> &client, const RemoteComputer &computer);
    // True when `client` is still the registered client of that computer; a replaced
    // client's late reports must not touch its successor.
    bool isRegistered(const QUuid &id, const std::weak_ptr<ZEKTClient> &client) const;
    void finishConnectionAttempt(const QUuid &id, bool connected,
                                 const std::optional<QString> &error);
    void handleDisconnection(const QUuid &id);
    void handleConnectionState(const NetworkState &state, const QUuid &id,
                               const std::weak_ptr<ZEKTClient> &client);
    void showLocalNetworkAlert(const QString &name);

    void handleMessage(const ZEKTMessagePtr &message, const QUuid &id,
                       const std::weak_ptr<ZEKTClient> &client);
    void handleDisconnectMessage(const QUuid &id);
    void handleSystemStats(const SystemStatsMessage &message, const QUuid &id);
    void handleScreenCapture(const ScreenCaptureMessage &message, const QUuid &id,
                             const QString &name);

    static bool promptServerIdentityChange(const std::shared_ptr<ManagerLifeline> &lifeline,
                                           const QString &label, const QString &previous,
                                           const QString &next);
    bool showServerIdentityAlert(const std::shared_ptr<TOFUPromptDecision> &decision,
                                 const QString &previous, const QString &next, const QString &label,
                                 const std::shared_ptr<QSemaphore> &signal);
    AlertPresenter *alertPresenter() const;
    QString nameOrUnknown(const QUuid &id) const;

    ClientFactory m_clientFactory;
    QHash<QUuid, std::shared_ptr<ZEKTClient>> m_clients;
    mutable std::mutex m_connectionLock;
    QSet<QUuid> m_connectingComputers;
    QHash<QUuid, std::shared_ptr<ConnectionAttempt>> m_connectionTasks;
    QHash<QUuid, quint64> m_connectionGenerations;
    QSet<QUuid> m_streamingComputers;
    QSet<QUuid> m_manualPreviewRequested;
    QHash<QUuid, int> m_networkDownErrorCounts;
    QSet<QString> m_uploadsUnderWay;
    QHash<QUuid, std::chrono::steady_clock::time_point> m_lastSandboxingDialogTime;
    SessionStore *m_store = nullptr;

    AlertPresenter *m_alertPresenter = nullptr;
    std::shared_ptr<ManagerLifeline> m_lifeline;
    Clock m_clock;
    ScreenImageDecoder m_decoder;
    Thumbnailer m_thumbnailer;
};
