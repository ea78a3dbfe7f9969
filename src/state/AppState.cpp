#include "AppState.h"

#include "model/ComputerJson.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/AppIdentity.h"
#include "platform/AppPaths.h"
#include "platform/PendingActionQueue.h"
#include "platform/SerialQueue.h"
#include "platform/SettingsFiles.h"
#include "platform/SharedSuiteWatcher.h"
#include "session/ZEKTManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QSet>
#include <QSettings>
#include <QTimer>
#include <mutex>

struct AppState::PendingSave {
    std::mutex mutex;
    std::optional<QList<RemoteComputer>> computers;
};

namespace {

// How long a queued remote-control or upload request waits for its session, and the
// rate a queued remote control streams at.
constexpr double queuedConnectionWait = 60.0;
constexpr double queuedRemoteControlFrameRate = 5.0;

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

// What is written for a record: run-time state is never persisted.
RemoteComputer storedForm(RemoteComputer computer)
{
    computer.isConnected = false;
    computer.isConnecting = false;
    computer.thumbnailImage.reset();
    computer.lastError.reset();
    return computer;
}

QString thumbnailPath(const QString &directory, const QUuid &id)
{
    return QDir(directory).filePath(UuidText::format(id) + QStringLiteral(".jpg"));
}

} // namespace

AppState::AppState(std::unique_ptr<ZEKTManager> manager, QObject *parent,
                   bool consumesPendingActions)
    : QObject(parent), appGroupIdentifier(QLatin1String(AppIdentity::appGroupIdentifier)),
      computersKey(QStringLiteral("remoteComputers")),
      m_zektManager(manager ? std::move(manager) : std::make_unique<ZEKTManager>()),
      m_legacyUserDefaults(SettingsFiles::openStandard()),
      m_persistenceQueue(std::make_unique<SerialQueue>(
          QLatin1String(AppIdentity::applicationIdentifier) + QStringLiteral(".persistence"))),
      m_thumbnailQueue(std::make_unique<SerialQueue>(
          QLatin1String(AppIdentity::applicationIdentifier) + QStringLiteral(".thumbnails"))),
      m_pendingSave(std::make_shared<PendingSave>()),
      m_pendingActionsQueue(std::make_unique<SerialQueue>(
          QLatin1String(AppIdentity::applicationIdentifier) + QStringLiteral(".pendingActions"))),
      m_pendingActionsReadScheduled(std::make_shared<std::atomic<bool>>(false)),
      m_isGone(std::make_shared<std::atomic<bool>>(false)),
      m_consumesPendingActions(consumesPendingActions)
{
    m_sharedUserDefaults = SettingsFiles::openSharedSuite();
    if (!m_sharedUserDefaults)
        m_sharedUserDefaults = SettingsFiles::openStandard();

    loadComputers();
    setSelectedItem(NavigationItem::dashboard());
    m_zektManager->setStore(this);

    m_defaultsObserver = std::make_unique<SharedSuiteWatcher>(SettingsFiles::sharedSuitePath());
    QPointer<AppState> self(this);
    connect(m_defaultsObserver.get(), &SharedSuiteWatcher::changed, this, [self] {
        if (self)
            self->processPendingActions();
    });

    processPendingActions();
}

AppState::~AppState()
{
    m_isGone->store(true);
    m_zektManager->setStore(nullptr);
    m_defaultsObserver.reset();
    LogManager::shared().log(QStringLiteral("AppState deinitialized"), QStringLiteral("MEMORY"));
}

void AppState::setComputers(QList<RemoteComputer> computers)
{
    m_computers = std::move(computers);
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
    QList<RemoteComputer> list = m_computers;
    list.append(computer);
    setComputers(std::move(list));
    saveComputers();
}

void AppState::updateComputer(const RemoteComputer &computer)
{
    const int index = indexOf(computer.id);
    if (index < 0)
        return;
    QList<RemoteComputer> list = m_computers;
    list[index] = computer;
    setComputers(std::move(list));
    saveComputers();
}

void AppState::removeComputer(const QUuid &id)
{
    QList<RemoteComputer> list = m_computers;
    list.removeIf([&id](const RemoteComputer &c) { return c.id == id; });
    setComputers(std::move(list));
    saveComputers();
}

void AppState::updateConnectingStatus(const QUuid &id, bool isConnecting)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    QList<RemoteComputer> list = m_computers;
    list[index].isConnecting = isConnecting;
    const QString label = list[index].displayName();
    setComputers(std::move(list));
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
    QList<RemoteComputer> list = m_computers;
    RemoteComputer &computer = list[index];
    computer.isConnected = isConnected;
    computer.isConnecting = false;
    if (isConnected) {
        computer.lastConnected = QDateTime::currentDateTimeUtc();
        computer.lastError.reset();
    } else if (error) {
        computer.lastError = *error;
    }
    const QString label = computer.displayName();
    setComputers(std::move(list));
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
    QList<RemoteComputer> list = m_computers;
    list[index].systemStats = stats;
    setComputers(std::move(list));
    saveComputers();
}

void AppState::saveComputers()
{
    // The list is shared, not copied, here; the stored form is made on the worker, so a
    // save costs the main thread next to nothing. Saves not yet started are replaced by
    // the newest one, which keeps a storm of statistics saves down to a few writes.
    bool schedule = false;
    {
        std::lock_guard lock(m_pendingSave->mutex);
        schedule = !m_pendingSave->computers.has_value();
        m_pendingSave->computers = m_computers;
    }
    if (!schedule)
        return;
    std::shared_ptr<PendingSave> pending = m_pendingSave;
    const QString key = computersKey;
    m_persistenceQueue->enqueue([pending, key] {
        QList<RemoteComputer> computers;
        {
            std::lock_guard lock(pending->mutex);
            computers = std::move(*pending->computers);
            pending->computers.reset();
        }
        for (RemoteComputer &computer : computers)
            computer = storedForm(std::move(computer));
        QString error;
        const QByteArray data = ComputerJson::encodeList(computers, &error);
        if (data.isEmpty()) {
            LogManager::shared().log(QStringLiteral("AppState: Failed to save computers: ") + error,
                                     QStringLiteral("ERROR"));
            return;
        }
        std::unique_ptr<QSettings> suite = SettingsFiles::openSharedSuite();
        if (!suite)
            suite = SettingsFiles::openStandard();
        SettingsFiles::writeSynchronized(
            *suite, [&](QSettings &settings) { settings.setValue(key, data); });
    });
}

void AppState::loadComputers()
{
    migrateLegacyComputersIfNeeded();

    const QVariant blob = m_sharedUserDefaults->value(computersKey);
    if (!blob.isValid())
        return;
    // An undecodable list stays stored until the next save replaces it; the thumbnails
    // are left alone, since their records are unknown.
    auto decoded = ComputerJson::decodeList(blob.toByteArray());
    if (!decoded)
        return;
    setComputers(*decoded);
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

void AppState::migrateLegacyComputersIfNeeded()
{
    const QList<RemoteComputer> shared =
        ComputerJson::decodeStoredList(m_sharedUserDefaults->value(computersKey));
    const QList<RemoteComputer> legacy =
        ComputerJson::decodeStoredList(m_legacyUserDefaults->value(computersKey));
    if (!shared.isEmpty() || legacy.isEmpty())
        return;
    QString error;
    const QByteArray data = ComputerJson::encodeList(legacy, &error);
    if (data.isEmpty()) {
        LogManager::shared().log(QStringLiteral("Failed to migrate legacy computers: ") + error,
                                 QStringLiteral("ERROR"));
        return;
    }
    SettingsFiles::writeSynchronized(
        *m_sharedUserDefaults, [&](QSettings &settings) { settings.setValue(computersKey, data); });
    LogManager::shared().log(
        QStringLiteral("Migrated %1 computers from legacy user defaults to the "
                       "shared app group")
            .arg(legacy.size()),
        QStringLiteral("PERSISTENCE"));
}

void AppState::loadThumbnails()
{
    const QString directory = AppPaths::thumbnailsDirectory();
    if (directory.isEmpty())
        return;
    QList<RemoteComputer> list = m_computers;
    bool loaded = false;
    for (RemoteComputer &computer : list) {
        QFile file(thumbnailPath(directory, computer.id));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        computer.thumbnailImage = file.readAll();
        loaded = true;
    }
    if (loaded) {
        setComputers(std::move(list));
        saveComputers();
    }
    removeOrphanedThumbnails();
}

void AppState::removeOrphanedThumbnails()
{
    const QString directory = AppPaths::thumbnailsDirectory();
    if (directory.isEmpty() || !QFileInfo(directory).isDir())
        return;
    QSet<QString> ids;
    for (const RemoteComputer &computer : m_computers)
        ids.insert(UuidText::format(computer.id));
    const QFileInfoList entries = QDir(directory).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    for (const QFileInfo &entry : entries) {
        // The name without its last extension must be a canonical (upper-case) id.
        if (ids.contains(entry.completeBaseName()))
            continue;
        const bool removed = entry.isDir() && !entry.isSymLink()
                                 ? QDir(entry.absoluteFilePath()).removeRecursively()
                                 : QFile::remove(entry.absoluteFilePath());
        if (!removed)
            return;
    }
}

void AppState::storeThumbnail(const QUuid &id, const QByteArray &data)
{
    QPointer<AppState> self(this);
    const QString directory = AppPaths::thumbnailsDirectory();
    m_thumbnailQueue->enqueue([self, id, data, directory] {
        if (!directory.isEmpty() && QDir().mkpath(directory)) {
            QSaveFile file(thumbnailPath(directory, id));
            if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size())
                file.commit();
        }
        QMetaObject::invokeMethod(
            self.data(),
            [self, id, data] {
                if (!self)
                    return;
                const int index = self->indexOf(id);
                if (index < 0)
                    return;
                QList<RemoteComputer> list = self->m_computers;
                list[index].thumbnailImage = data;
                self->setComputers(std::move(list));
                self->saveComputers();
            },
            Qt::QueuedConnection);
    });
}

void AppState::waitForPendingWrites()
{
    m_thumbnailQueue->waitUntilIdle();
    m_persistenceQueue->waitUntilIdle();
    m_pendingActionsQueue->waitUntilIdle();
}

// --- Upload display state -------------------------------------------------------------

void AppState::beginFileTransfer(const QString &fileName)
{
    QMetaObject::invokeMethod(
        this,
        [this, fileName] {
            ++m_fileTransferGeneration;
            m_isFileTransferInProgress = true;
            m_fileTransferProgress = 0.0;
            m_fileTransferFileName = fileName;
            m_fileTransferStatus = tr("Preparing transfer...");
            Q_EMIT fileTransferChanged();
        },
        Qt::QueuedConnection);
}

void AppState::updateFileTransferProgress(const QString &status, double fraction)
{
    QMetaObject::invokeMethod(
        this,
        [this, status, fraction] {
            // A dismissed or finished transfer stays off the screen while its last
            // progress reports trickle in.
            if (!m_isFileTransferInProgress)
                return;
            m_fileTransferProgress = fraction;
            m_fileTransferStatus = status;
            Q_EMIT fileTransferChanged();
        },
        Qt::QueuedConnection);
}

void AppState::completeFileTransfer(const QString &message)
{
    QMetaObject::invokeMethod(
        this,
        [this, message] {
            m_isFileTransferInProgress = false;
            m_fileTransferStatus = message;
            Q_EMIT fileTransferChanged();
            // Each shown state owns its reset: a transfer that begins, or an outcome that
            // arrives, while an earlier state is shown is not cut short by that reset.
            const quint64 generation = ++m_fileTransferGeneration;
            QTimer::singleShot(m_outcomeDisplayMs, this, [this, generation] {
                if (generation != m_fileTransferGeneration)
                    return;
                m_fileTransferProgress = 0.0;
                m_fileTransferFileName.clear();
                m_fileTransferStatus.clear();
                Q_EMIT fileTransferChanged();
            });
        },
        Qt::QueuedConnection);
}

void AppState::cancelFileTransfer()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isFileTransferInProgress = false;
            m_fileTransferProgress = 0.0;
            m_fileTransferFileName.clear();
            m_fileTransferStatus = tr("Transfer cancelled");
            Q_EMIT fileTransferChanged();
            const quint64 generation = ++m_fileTransferGeneration;
            QTimer::singleShot(m_cancelDisplayMs, this, [this, generation] {
                if (generation != m_fileTransferGeneration)
                    return;
                m_fileTransferStatus.clear();
                Q_EMIT fileTransferChanged();
            });
        },
        Qt::QueuedConnection);
}

void AppState::setUploadDisplayDurationsForTesting(int outcomeMs, int cancelMs)
{
    m_outcomeDisplayMs = outcomeMs;
    m_cancelDisplayMs = cancelMs;
}

// --- Supervision and automation --------------------------------------------------------

void AppState::setClockForTesting(std::function<QDateTime()> clock)
{
    m_clock = std::move(clock);
}

void AppState::setConnectionPollIntervalForTesting(int milliseconds)
{
    m_connectionPollIntervalMs = milliseconds;
}

QDateTime AppState::now() const
{
    return m_clock ? m_clock() : QDateTime::currentDateTimeUtc();
}

bool AppState::shouldAutoConnect(const RemoteComputer &computer, const QDateTime &now,
                                 double minimumRetryInterval) const
{
    if (computer.isConnected || computer.isConnecting)
        return false;
    const auto last = m_lastAutoConnectAttempts.constFind(computer.id);
    if (last != m_lastAutoConnectAttempts.constEnd() &&
        double(last->msecsTo(now)) / 1000.0 < minimumRetryInterval)
        return false;
    return true;
}

void AppState::autoConnectDisconnectedComputers(double minimumRetryInterval)
{
    // One timestamp for the whole pass.
    const QDateTime passTime = now();
    QList<RemoteComputer> selected;
    for (const RemoteComputer &computer : m_computers) {
        if (shouldAutoConnect(computer, passTime, minimumRetryInterval))
            selected.append(computer);
    }
    if (selected.isEmpty())
        return;
    LogManager::shared().log(
        QStringLiteral("Supervision: connecting to %1 disconnected computer(s)")
            .arg(selected.size()),
        QStringLiteral("CONNECT"));
    for (const RemoteComputer &computer : selected) {
        m_lastAutoConnectAttempts.insert(computer.id, passTime);
        m_zektManager->connectToComputer(computer);
    }
}

void AppState::waitForConnection(const QUuid &id, double timeout,
                                 std::function<void(bool)> completion)
{
    struct Wait {
        QDateTime deadline;
        std::function<void(bool)> completion;
        bool isDone = false;
    };
    auto wait = std::make_shared<Wait>(
        Wait{now().addMSecs(qint64(timeout * 1000.0)), std::move(completion)});
    // The timer belongs to this object: when the store goes, the wait goes with it.
    auto *timer = new QTimer(this);
    QPointer<AppState> self(this);
    const int pollMs = m_connectionPollIntervalMs;
    connect(timer, &QTimer::timeout, this, [self, timer, id, wait, pollMs] {
        if (!self || wait->isDone)
            return;
        std::optional<bool> outcome;
        if (self->now() < wait->deadline) {
            const std::optional<RemoteComputer> record = self->computer(id);
            if (record && record->isConnected)
                outcome = true;
            // This relies on connectToComputer marking the computer connecting at once:
            // an error left over from an earlier attempt must not end the wait.
            else if (record && !record->isConnecting && record->lastError &&
                     !record->lastError->isEmpty())
                outcome = false;
        } else {
            outcome = false;
        }
        if (!outcome) {
            if (timer->interval() != pollMs)
                timer->start(pollMs);
            return;
        }
        wait->isDone = true;
        timer->stop();
        timer->deleteLater();
        wait->completion(*outcome);
    });
    // The first look comes from the event loop, after the caller's own work is done.
    timer->start(0);
}

void AppState::processPendingActions()
{
    if (!m_consumesPendingActions || m_pendingActionsReadScheduled->exchange(true))
        return;
    QPointer<AppState> self(this);
    auto scheduled = m_pendingActionsReadScheduled;
    auto gone = m_isGone;
    m_pendingActionsQueue->enqueue([self, scheduled, gone] {
        scheduled->store(false);
        if (gone->load())
            return;
        // The queue lives in the shared suite only; without it nothing can be queued.
        std::unique_ptr<QSettings> suite = SettingsFiles::openSharedSuite();
        if (!suite)
            return;
        const PendingActions actions = PendingActionQueue::take(*suite);
        if (actions.isEmpty())
            return;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, actions] {
                if (self)
                    self->carryOut(actions);
            },
            Qt::QueuedConnection);
    });
}

void AppState::carryOut(const PendingActions &actions)
{
    // Each step looks the record up again: an earlier step may have changed it.
    // Requests for computers no longer in the list are dropped without a word.
    if (actions.connection) {
        if (const auto record = computer(*actions.connection))
            m_zektManager->connectToComputer(*record);
    }
    if (actions.disconnection) {
        if (const auto record = computer(*actions.disconnection))
            m_zektManager->disconnectFromComputer(*record);
    }
    QPointer<AppState> self(this);
    if (actions.remoteControl) {
        if (const auto record = computer(*actions.remoteControl)) {
            setSelectedItem(NavigationItem::computer(record->id));
            m_zektManager->connectToComputer(*record);
            const RemoteComputer held = *record;
            waitForConnection(held.id, queuedConnectionWait, [self, held](bool isConnected) {
                if (!self)
                    return;
                if (!isConnected) {
                    LogManager::shared().log(
                        QStringLiteral("Timed out waiting for connection before starting remote "
                                       "control for ") +
                            held.displayName(),
                        QStringLiteral("ERROR"));
                    return;
                }
                self->m_zektManager->startRemoteControlStreaming(
                    self->computer(held.id).value_or(held), queuedRemoteControlFrameRate);
            });
        }
    }
    if (actions.stopRemoteControl) {
        if (const auto record = computer(*actions.stopRemoteControl))
            m_zektManager->stopRemoteControlStreaming(*record);
    }
    if (actions.fileUpload) {
        const PendingActions::Upload upload = *actions.fileUpload;
        if (const auto record = computer(upload.computerId)) {
            m_zektManager->connectToComputer(*record);
            const RemoteComputer held = *record;
            waitForConnection(
                held.id, queuedConnectionWait, [self, held, upload](bool isConnected) {
                    if (!self)
                        return;
                    if (!isConnected) {
                        // The staged copy stays; only a finished transfer deletes it.
                        self->completeFileTransfer(QStringLiteral("Unable to connect to ") +
                                                   held.displayName() +
                                                   QStringLiteral(" for file upload"));
                        return;
                    }
                    self->m_zektManager->sendFileTransfer(self->computer(held.id).value_or(held),
                                                          upload.filePath, upload.fileName, true);
                });
        }
    }
}
