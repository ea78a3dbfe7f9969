#include "AppState.h"

#include "AutoConnectPass.h"
#include "ComputerListStorage.h"
#include "PendingActionInbox.h"
#include "UploadDisplayState.h"
#include "model/LogManager.h"
#include "platform/AppIdentity.h"
#include "platform/SettingsFiles.h"
#include "platform/SharedSuiteWatcher.h"

#include <QPointer>
#include <QSet>

namespace {

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

AppState::AppState(std::unique_ptr<ZEKTManager> manager, QObject *parent,
                   bool consumesPendingActions)
    : QObject(parent), appGroupIdentifier(QLatin1String(AppIdentity::appGroupIdentifier)),
      computersKey(QStringLiteral("remoteComputers")),
      m_zektManager(manager ? std::move(manager) : std::make_unique<ZEKTManager>()),
      m_storage(std::make_unique<ComputerListStorage>(computersKey)),
      m_uploadDisplay(new UploadDisplayState(this)),
      m_autoConnect(std::make_unique<AutoConnectPass>(*this, *m_zektManager)),
      m_pendingActions(new PendingActionInbox(*this, consumesPendingActions, this))
{
    connect(m_uploadDisplay, &UploadDisplayState::changed, this, &AppState::fileTransferChanged);

    loadComputers();
    setSelectedItem(NavigationItem::dashboard());
    m_zektManager->setStore(this);

    m_defaultsObserver = std::make_unique<SharedSuiteWatcher>(SettingsFiles::sharedSuitePath());
    QPointer<AppState> self(this);
    connect(m_defaultsObserver.get(), &SharedSuiteWatcher::changed, this, [self] {
        if (self)
            self->processPendingActions();
    });

    m_pendingActions->sweepStagedUploads();
    processPendingActions();
}

AppState::~AppState()
{
    // A queued read must not consume requests that nobody would carry out.
    m_pendingActions->stopTaking();
    m_zektManager->setStore(nullptr);
    m_defaultsObserver.reset();
    LogManager::shared().log(QStringLiteral("AppState deinitialized"), QStringLiteral("MEMORY"));
}

// --- The computer list -----------------------------------------------------------------

void AppState::setComputers(QList<RemoteComputer> computers)
{
    const QList<RemoteComputer> before = std::exchange(m_computers, std::move(computers));
    const bool sameRows =
        std::equal(before.begin(), before.end(), m_computers.begin(), m_computers.end(),
                   [](const RemoteComputer &a, const RemoteComputer &b) { return a.id == b.id; });
    if (sameRows) {
        for (int row = 0; row < m_computers.size(); ++row) {
            if (const ComputerFields fields = changedFields(before.at(row), m_computers.at(row)))
                Q_EMIT computerChanged(m_computers.at(row).id, fields);
        }
    } else {
        QSet<QUuid> removed;
        for (const RemoteComputer &computer : before) {
            if (!removed.contains(computer.id)) {
                removed.insert(computer.id);
                Q_EMIT computerRemoved(computer.id);
            }
        }
        for (int row = 0; row < m_computers.size(); ++row)
            Q_EMIT computerAdded(m_computers.at(row).id, row);
    }
    Q_EMIT computersChanged();
}

void AppState::replaceComputer(int index, RemoteComputer updated)
{
    const ComputerFields fields = changedFields(m_computers.at(index), updated);
    const QUuid id = updated.id;
    m_computers[index] = std::move(updated);
    if (fields)
        Q_EMIT computerChanged(id, fields);
    Q_EMIT computersChanged();
}

std::optional<RemoteComputer> AppState::computer(const QUuid &id) const
{
    const int index = indexOf(id);
    if (index < 0)
        return std::nullopt;
    return m_computers.at(index);
}

std::optional<QString> AppState::computerDisplayName(const QUuid &id) const
{
    const int index = indexOf(id);
    if (index < 0)
        return std::nullopt;
    return m_computers.at(index).displayName();
}

void AppState::setSelectedItem(const NavigationItem &item)
{
    m_selectedItem = item;
    Q_EMIT selectedItemChanged();
}

int AppState::indexOf(const QUuid &id) const
{
    for (int i = 0; i < m_computers.size(); ++i) {
        if (m_computers.at(i).id == id)
            return i;
    }
    return -1;
}

void AppState::addComputer(const RemoteComputer &computer)
{
    m_computers.append(computer);
    Q_EMIT computerAdded(computer.id, int(m_computers.size()) - 1);
    Q_EMIT computersChanged();
    saveComputers();
}

bool AppState::addComputerIfEmpty(const RemoteComputer &computer)
{
    if (!m_computers.isEmpty() || m_storedListUndecodable)
        return false;
    addComputer(computer);
    return true;
}

void AppState::updateComputer(const RemoteComputer &computer)
{
    const int index = indexOf(computer.id);
    if (index < 0)
        return;
    replaceComputer(index, computer);
    saveComputers();
}

void AppState::removeComputer(const QUuid &id)
{
    if (m_computers.removeIf([&id](const RemoteComputer &c) { return c.id == id; }) > 0)
        Q_EMIT computerRemoved(id);
    Q_EMIT computersChanged();
    saveComputers();
}

void AppState::updateConnectingStatus(const QUuid &id, bool isConnecting)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    RemoteComputer computer = m_computers.at(index);
    computer.isConnecting = isConnecting;
    const QString label = computer.displayName();
    replaceComputer(index, std::move(computer));
    saveComputers();
    LogManager::shared().log(QStringLiteral("AppState: Updated computer ") + label +
                                 QStringLiteral(" connecting status to ") + boolText(isConnecting),
                             QStringLiteral("CONNECT"));
}

void AppState::updateConnectionStatus(const QUuid &id, bool isConnected,
                                      const std::optional<QString> &error)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    RemoteComputer computer = m_computers.at(index);
    computer.isConnected = isConnected;
    computer.isConnecting = false;
    if (isConnected) {
        computer.lastConnected = QDateTime::currentDateTimeUtc();
        computer.lastError.reset();
    } else if (error) {
        computer.lastError = *error;
    }
    const QString label = computer.displayName();
    replaceComputer(index, std::move(computer));
    saveComputers();
    LogManager::shared().log(QStringLiteral("AppState: Updated computer ") + label +
                                 QStringLiteral(" status to ") + boolText(isConnected),
                             QStringLiteral("CONNECT"));
}

void AppState::applySystemStats(const QUuid &id, const SystemStats &stats)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    RemoteComputer computer = m_computers.at(index);
    computer.systemStats = stats;
    replaceComputer(index, std::move(computer));
    saveComputers();
}

void AppState::storeThumbnail(const QUuid &id, const QByteArray &data)
{
    m_storage->writeThumbnail(id, data, this, [this, id, data] {
        const int index = indexOf(id);
        if (index < 0)
            return;
        RemoteComputer computer = m_computers.at(index);
        computer.thumbnailImage = data;
        replaceComputer(index, std::move(computer));
        saveComputers();
    });
}

void AppState::saveComputers()
{
    m_storage->save(m_computers);
}

void AppState::loadComputers()
{
    m_storage->migrateLegacyComputersIfNeeded();
    // An undecodable list stays stored (with a copy aside) until the next save replaces
    // it; the thumbnails are left alone, since their records are unknown.
    ComputerListStorage::Loaded loaded = m_storage->load();
    m_storedListUndecodable = loaded.status == ComputerListStorage::Loaded::Status::undecodable;
    if (loaded.status != ComputerListStorage::Loaded::Status::decoded)
        return;
    setComputers(std::move(loaded.computers));
    saveComputers();

    QList<RemoteComputer> list = m_computers;
    for (RemoteComputer &computer : list) {
        computer.isConnected = false;
        computer.isConnecting = false;
        computer.lastError.reset();
    }
    setComputers(std::move(list));
    saveComputers();

    loadThumbnails();
}

void AppState::loadThumbnails()
{
    QList<RemoteComputer> list = m_computers;
    bool loaded = false;
    for (RemoteComputer &computer : list) {
        if (std::optional<QByteArray> data = m_storage->readThumbnail(computer.id)) {
            computer.thumbnailImage = std::move(*data);
            loaded = true;
        }
    }
    if (loaded) {
        setComputers(std::move(list));
        saveComputers();
    }
    m_storage->removeOrphanedThumbnails(m_computers);
}

void AppState::waitForPendingWrites()
{
    m_storage->waitUntilIdle();
    m_pendingActions->waitUntilIdle();
}

// --- Upload display state ----------------------------------------------------------------

bool AppState::isFileTransferInProgress() const
{
    return m_uploadDisplay->isFileTransferInProgress();
}

double AppState::fileTransferProgress() const
{
    return m_uploadDisplay->fileTransferProgress();
}

QString AppState::fileTransferFileName() const
{
    return m_uploadDisplay->fileTransferFileName();
}

QString AppState::fileTransferStatus() const
{
    return m_uploadDisplay->fileTransferStatus();
}

void AppState::beginFileTransfer(const QString &fileName)
{
    m_uploadDisplay->beginFileTransfer(fileName);
}

void AppState::updateFileTransferProgress(const QString &status, double fraction)
{
    m_uploadDisplay->updateFileTransferProgress(status, fraction);
}

void AppState::completeFileTransfer(const QString &message)
{
    m_uploadDisplay->completeFileTransfer(message);
}

void AppState::cancelFileTransfer()
{
    m_uploadDisplay->cancelFileTransfer();
}

void AppState::setUploadDisplayDurationsForTesting(int outcomeMs, int cancelMs)
{
    m_uploadDisplay->setDisplayDurationsForTesting(outcomeMs, cancelMs);
}

// --- Supervision and automation --------------------------------------------------------

const QHash<QUuid, QDateTime> &AppState::lastAutoConnectAttempts() const
{
    return m_autoConnect->lastAutoConnectAttempts();
}

bool AppState::shouldAutoConnect(const RemoteComputer &computer, const QDateTime &now,
                                 double minimumRetryInterval) const
{
    return m_autoConnect->shouldAutoConnect(computer, now, minimumRetryInterval);
}

void AppState::autoConnectDisconnectedComputers(double minimumRetryInterval)
{
    // One timestamp for the whole pass.
    m_autoConnect->run(now(), minimumRetryInterval);
}

void AppState::waitForConnection(const QUuid &id, double timeout,
                                 std::function<void(bool)> completion)
{
    m_pendingActions->waitForConnection(id, timeout, std::move(completion));
}

void AppState::processPendingActions()
{
    m_pendingActions->processPendingActions();
}

void AppState::setClockForTesting(std::function<QDateTime()> clock)
{
    m_clock = std::move(clock);
}

void AppState::setConnectionPollIntervalForTesting(int milliseconds)
{
    m_pendingActions->setConnectionPollIntervalForTesting(milliseconds);
}

QDateTime AppState::now() const
{
    return m_clock ? m_clock() : QDateTime::currentDateTimeUtc();
}
