#include "ZEKTManager.h"

#include "ConnectionAttempt.h"
#include "DecodedFrameCache.h"
#include "ManagerLifeline.h"
#include "model/LogManager.h"
#include "platform/AlertPresenter.h"
#include "platform/NetworkSettingsLauncher.h"
#include "protocol/ZEKTClient.h"

namespace {

void log(const QString &message, const char *category = "CONNECT")
{
    LogManager::shared().log(message, QLatin1String(category));
}

// Network-is-down waits between two Local Network alerts of one computer.
constexpr std::chrono::seconds localNetworkAlertInterval{60};

} // namespace

ZEKTManager::ZEKTManager(ClientFactory clientFactory, QObject *parent)
    : QObject(parent), m_clientFactory(std::move(clientFactory)),
      m_lifeline(std::make_shared<ManagerLifeline>(this)),
      m_clock([] { return std::chrono::steady_clock::now(); })
{
    if (!m_clientFactory)
        m_clientFactory = [](const QString &host, quint16 port) {
            return ZEKTClient::create(host, port);
        };
}

ZEKTManager::~ZEKTManager()
{
    // Library threads may still hold handlers; from now on they reach nothing.
    m_lifeline->sever();
    for (const auto &attempt : std::as_const(m_connectionTasks))
        attempt->cancel();
    log(QStringLiteral("ZEKTManager deinitialized"), "MEMORY");
}

namespace {

class NoStore final : public SessionStore {
public:
    const QList<RemoteComputer> &computers() const override { return m_none; }
    std::optional<QString> computerDisplayName(const QUuid &) const override
    {
        return std::nullopt;
    }
    void updateConnectingStatus(const QUuid &, bool) override {}
    void updateConnectionStatus(const QUuid &, bool, const std::optional<QString> &) override {}
    void applySystemStats(const QUuid &, const SystemStats &) override {}
    void storeThumbnail(const QUuid &, const QByteArray &) override {}
    void beginFileTransfer(const QString &) override {}
    void updateFileTransferProgress(const QString &, double) override {}
    void completeFileTransfer(const QString &) override {}

private:
    const QList<RemoteComputer> m_none{};
};

} // namespace

SessionStore &ZEKTManager::store() const
{
    static NoStore none;
    return m_store ? *m_store : none;
}

AlertPresenter *ZEKTManager::alertPresenter() const
{
    return m_alertPresenter ? m_alertPresenter : AlertPresenter::shared();
}

std::optional<QString> ZEKTManager::computerDisplayName(const QUuid &id) const
{
    return store().computerDisplayName(id);
}

QString ZEKTManager::nameOrUnknown(const QUuid &id) const
{
    return computerDisplayName(id).value_or(QStringLiteral("Unknown Computer"));
}

bool ZEKTManager::isConnecting(const QUuid &id) const
{
    std::lock_guard lock(m_connectionLock);
    return m_connectingComputers.contains(id);
}

bool ZEKTManager::isStreaming(const QUuid &id) const
{
    std::lock_guard lock(m_connectionLock);
    return m_streamingComputers.contains(id);
}

bool ZEKTManager::isManualPreviewRequested(const QUuid &id) const
{
    std::lock_guard lock(m_connectionLock);
    return m_manualPreviewRequested.contains(id);
}

quint64 ZEKTManager::connectionGeneration(const QUuid &id) const
{
    std::lock_guard lock(m_connectionLock);
    return m_connectionGenerations.value(id, 0);
}

int ZEKTManager::networkDownErrorCount(const QUuid &id) const
{
    std::lock_guard lock(m_connectionLock);
    return m_networkDownErrorCounts.value(id, 0);
}

bool ZEKTManager::isCurrentGeneration(const QUuid &id, quint64 generation) const
{
    std::lock_guard lock(m_connectionLock);
    const auto it = m_connectionGenerations.constFind(id);
    return it != m_connectionGenerations.constEnd() && *it == generation;
}

void ZEKTManager::setClient(const QUuid &id, std::shared_ptr<ZEKTClient> client)
{
    m_clients.insert(id, std::move(client));
    Q_EMIT clientsChanged();
}

void ZEKTManager::removeClient(const QUuid &id)
{
    if (m_clients.remove(id) > 0)
        Q_EMIT clientsChanged();
}

// --- Connecting -------------------------------------------------------------------------

double ZEKTManager::connectionDeadline()
{
    return ZEKT::connectionTimeout() + ZEKT::handshakeTimeout() + ZEKT::handshakeTimeout() + 10.0;
}

void ZEKTManager::connectToComputer(const RemoteComputer &computer)
{
    const QUuid id = computer.id;
    const QString label = computer.displayName();
    const QString endpoint = computer.host + QLatin1Char(':') + QString::number(computer.port);
    log(QStringLiteral("ZEKTManager.connectToComputer called for: ") + label +
        QStringLiteral(" (sandboxed mode)"));

    if (const auto task = m_connectionTasks.take(id))
        task->cancel();

    const std::shared_ptr<ZEKTClient> existing = m_clients.value(id);
    {
        std::unique_lock lock(m_connectionLock);
        m_connectingComputers.remove(id);
        if (existing && existing->connectionState() == ZEKT::ConnectionState::connected) {
            lock.unlock();
            log(QStringLiteral("Already connected to ") + label);
            return;
        }
    }
    quint64 generation = 0;
    {
        std::lock_guard lock(m_connectionLock);
        generation = m_connectionGenerations.value(id, 0) + 1;
        m_connectionGenerations.insert(id, generation);
        m_connectingComputers.insert(id);
    }
    store().updateConnectingStatus(id, true);

    log(QStringLiteral("Connecting to ") + label + QStringLiteral(" at ") + endpoint +
        QStringLiteral(" (sandboxed)"));
    log(QStringLiteral("Connection details: host=") + computer.host + QStringLiteral(", port=") +
        QString::number(computer.port));
    log(QStringLiteral("Using remote Mac account credentials for ") + computer.username);
    log(QStringLiteral("Sandboxed client uses IPv4 network entitlements"));

    if (existing) {
        log(QStringLiteral("Cleaning up existing client for ") + label);
        existing->disconnect();
        removeClient(id);
    }

    std::shared_ptr<ZEKTClient> client;
    QString failure;
    try {
        client = m_clientFactory(computer.host, computer.port);
        if (!client)
            failure = QStringLiteral("No client could be made for this address");
    } catch (const ZEKTError &e) {
        failure = e.description();
    } catch (const std::exception &e) {
        failure = QString::fromLocal8Bit(e.what());
    }
    if (!client) {
        log(QStringLiteral("Failed to create ZEKTClient for ") + endpoint + QStringLiteral(": ") +
                failure,
            "ERROR");
        finishConnectionAttempt(id, false, failure);
        return;
    }
    log(QStringLiteral("Created ZEKTClient for ") + endpoint + QStringLiteral(" (sandboxed)"));

    installHandlers(client, computer);

    const double deadline = connectionDeadline();
    auto attempt = std::make_shared<ConnectionAttempt>(generation, client, computer, deadline);
    m_connectionTasks.insert(id, attempt);
    QMetaObject::invokeMethod(
        this, [this, attempt] { runAttempt(attempt); }, Qt::QueuedConnection);
}

void ZEKTManager::installHandlers(const std::shared_ptr<ZEKTClient> &client,
                                  const RemoteComputer &computer)
{
    const QUuid id = computer.id;
    const QString label = computer.displayName();
    const std::shared_ptr<ManagerLifeline> lifeline = m_lifeline;
    const std::weak_ptr<ZEKTClient> self = client;

    client->setLogFunction([](const QString &message, const QString &category) {
        LogManager::shared().log(message, category);
    });
    client->setOnServerIdentityMismatch(
        [lifeline, label](const QString &previous, const QString &next) {
            if (!lifeline->isAlive())
                return false;
            return promptServerIdentityChange(lifeline, label, previous, next);
        });
    client->setMessageHandler([lifeline, id, self](const ZEKTMessagePtr &message) {
        lifeline->post([message, id, self](ZEKTManager &manager) {
            manager.handleMessage(message, id, self);
        });
    });
    client->setStateUpdateHandler([lifeline, id, self](const NetworkState &state) {
        lifeline->post([state, id, self](ZEKTManager &manager) {
            manager.handleConnectionState(state, id, self);
        });
    });
}

bool ZEKTManager::isRegistered(const QUuid &id, const std::weak_ptr<ZEKTClient> &client) const
{
    const auto it = m_clients.constFind(id);
    return it != m_clients.constEnd() && !client.owner_before(*it) && !it->owner_before(client);
}

void ZEKTManager::runAttempt(const std::shared_ptr<ConnectionAttempt> &attempt)
{
    // An attempt cancelled before it began leaves no client behind.
    if (attempt->isCancelled())
        return;
    const QUuid id = attempt->computer().id;
    setClient(id, attempt->client());
    if (attempt->isCancelled() || !isCurrentGeneration(id, attempt->generation()))
        return;

    const QString label = attempt->computer().displayName();
    attempt->start(
        [label] {
            log(QStringLiteral("Connection and handshake completed to ") + label);
            log(QStringLiteral("Starting authentication for ") + label, "AUTH");
        },
        [this,
         weak = std::weak_ptr<ConnectionAttempt>(attempt)](const std::optional<QString> &error) {
            if (const auto current = weak.lock())
                attemptFinished(current, error);
        });
}

void ZEKTManager::attemptFinished(const std::shared_ptr<ConnectionAttempt> &attempt,
                                  const std::optional<QString> &error)
{
    const QUuid id = attempt->computer().id;
    const QString label = attempt->computer().displayName();
    const bool current = isCurrentGeneration(id, attempt->generation());

    if (!error) {
        log(QStringLiteral("Authentication successful for ") + label, "AUTH");
        if (current && m_clients.contains(id))
            finishConnectionAttempt(id, true, std::nullopt);
        log(QStringLiteral("UI updated: ") + label + QStringLiteral(" status set to connected"));
        removeConnectionTask(attempt);
        return;
    }

    log(QStringLiteral("Connection/handshake/authentication failed to ") + label +
            QStringLiteral(": ") + *error,
        "ERROR");
    attempt->client()->disconnect();
    if (current) {
        removeClient(id);
        finishConnectionAttempt(id, false, *error);
    }
    log(QStringLiteral("Cleaned up failed connection for ") + label);
    log(QStringLiteral("UI updated: ") + label +
        QStringLiteral(" status set to disconnected with error"));
    removeConnectionTask(attempt);
}

void ZEKTManager::removeConnectionTask(const std::shared_ptr<ConnectionAttempt> &attempt)
{
    // Called from the attempt's own callback: it is released once that has returned.
    QMetaObject::invokeMethod(
        this,
        [this, attempt] {
            const QUuid id = attempt->computer().id;
            if (m_connectionTasks.value(id) == attempt)
                m_connectionTasks.remove(id);
        },
        Qt::QueuedConnection);
}

void ZEKTManager::finishConnectionAttempt(const QUuid &id, bool connected,
                                          const std::optional<QString> &error)
{
    {
        std::lock_guard lock(m_connectionLock);
        m_connectingComputers.remove(id);
    }
    store().updateConnectionStatus(id, connected, error);
}

void ZEKTManager::handleDisconnection(const QUuid &id)
{
    removeClient(id);
    finishConnectionAttempt(id, false, std::nullopt);
    {
        std::lock_guard lock(m_connectionLock);
        m_streamingComputers.remove(id);
    }
    DecodedFrameCache::shared().remove(id);
}

void ZEKTManager::disconnectFromComputer(const RemoteComputer &computer)
{
    const QUuid id = computer.id;
    const QString label = computer.displayName();
    log(QStringLiteral("Disconnecting from ") + label);
    if (const auto task = m_connectionTasks.take(id))
        task->cancel();
    {
        std::lock_guard lock(m_connectionLock);
        m_connectionGenerations.insert(id, m_connectionGenerations.value(id, 0) + 1);
    }
    if (const std::shared_ptr<ZEKTClient> client = m_clients.value(id)) {
        client->disconnect();
        removeClient(id);
    }
    finishConnectionAttempt(id, false, std::nullopt);
    {
        std::lock_guard lock(m_connectionLock);
        m_streamingComputers.remove(id);
        m_networkDownErrorCounts.remove(id);
        m_lastSandboxingDialogTime.remove(id);
    }
    DecodedFrameCache::shared().remove(id);
    log(QStringLiteral("Disconnected from ") + label + QStringLiteral(" and cleaned up client"));
}

// --- Network state ----------------------------------------------------------------------

void ZEKTManager::handleConnectionState(const NetworkState &state, const QUuid &id,
                                        const std::weak_ptr<ZEKTClient> &client)
{
    if (!isRegistered(id, client)) {
        log(QStringLiteral("Ignoring connection state change for removed computer ") +
            nameOrUnknown(id));
        return;
    }
    const QString name = nameOrUnknown(id);

    if (state.isNetworkDown()) {
        int count = 0;
        bool showAlert = false;
        {
            std::lock_guard lock(m_connectionLock);
            count = m_networkDownErrorCounts.value(id, 0) + 1;
            m_networkDownErrorCounts.insert(id, count);
            if (count > 4) {
                const auto now = m_clock();
                const auto last = m_lastSandboxingDialogTime.constFind(id);
                if (last == m_lastSandboxingDialogTime.constEnd() ||
                    now - *last > localNetworkAlertInterval) {
                    m_lastSandboxingDialogTime.insert(id, now);
                    showAlert = true;
                }
            }
        }
        if (count % 10 == 1)
            log(QStringLiteral("Network connection issue for ") + name +
                QStringLiteral(" (error #") + QString::number(count) +
                QStringLiteral(") - check Local Network permission and reachability"));
        if (showAlert)
            showLocalNetworkAlert(name);
        return;
    }

    if (state.kind() == NetworkState::Kind::ready) {
        std::lock_guard lock(m_connectionLock);
        m_networkDownErrorCounts.remove(id);
    }
    log(QStringLiteral("Connection state changed for ") + name + QStringLiteral(": ") +
        state.text());
    switch (state.kind()) {
    case NetworkState::Kind::failed:
    case NetworkState::Kind::cancelled:
        QMetaObject::invokeMethod(
            this,
            [this, id, client] {
                // A newer attempt may have taken over meanwhile; it is not torn down.
                if (isRegistered(id, client))
                    handleDisconnection(id);
            },
            Qt::QueuedConnection);
        log(QStringLiteral("Client disconnected from server for ") + name);
        break;
    case NetworkState::Kind::ready:
        log(QStringLiteral("Connection ready for ") + name);
        break;
    default:
        log(QStringLiteral("Connection state: ") + state.text() + QStringLiteral(" for ") + name);
        break;
    }
}

void ZEKTManager::showLocalNetworkAlert(const QString &name)
{
    QMetaObject::invokeMethod(
        this,
        [this, name] {
            Alert alert;
            alert.style = Alert::Style::warning;
            alert.title = tr("Network Access Required");
            alert.text =
                tr("Unable to connect to ") + name +
                tr(". This can happen when macOS Local Network permission is disabled or the "
                   "computer is unreachable.\n\nTo check Local Network permission:\n1. Go to "
                   "System Settings > Privacy & Security > Local Network\n2. Find 'Telvane' in "
                   "the list\n3. Enable local network access\n4. Try connecting again");
            alert.buttons = {tr("Open System Settings"), tr("OK")};
            AlertPresenter *presenter = alertPresenter();
            if (!presenter) {
                log(QStringLiteral("No alert presenter to show: ") + alert.title, "WARN");
                return;
            }
            presenter->show(alert, [](int button) {
                if (button == 0 && !NetworkSettingsLauncher::open())
                    log(QStringLiteral("No network settings program found"), "WARN");
            });
        },
        Qt::QueuedConnection);
}
