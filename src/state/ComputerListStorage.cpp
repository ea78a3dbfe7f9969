#include "ComputerListStorage.h"

#include "model/ComputerJson.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/AppIdentity.h"
#include "platform/AppPaths.h"
#include "platform/SerialQueue.h"
#include "platform/SettingsFiles.h"
#include "platform/StoredListGuard.h"
#include "posix/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSettings>
#include <atomic>
#include <mutex>

struct ComputerListStorage::PendingSave {
    std::mutex mutex;
    std::optional<QList<RemoteComputer>> computers;
    std::atomic<int> writes{0};
    // What this process stored last (the worker's alone): finding it needs no decoding.
    QByteArray lastWritten;
};

namespace {

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

QString queueLabel(const char *suffix)
{
    return QLatin1String(AppIdentity::applicationIdentifier) + QLatin1String(suffix);
}

} // namespace

ComputerListStorage::ComputerListStorage(QString computersKey)
    : m_computersKey(std::move(computersKey)), m_legacyUserDefaults(SettingsFiles::openStandard()),
      m_persistenceQueue(std::make_unique<SerialQueue>(queueLabel(".persistence"))),
      m_thumbnailQueue(std::make_unique<SerialQueue>(queueLabel(".thumbnails"))),
      m_pendingSave(std::make_shared<PendingSave>())
{
    m_sharedUserDefaults = SettingsFiles::openSharedSuite();
    if (!m_sharedUserDefaults)
        m_sharedUserDefaults = SettingsFiles::openStandard();
}

ComputerListStorage::~ComputerListStorage() = default;

void ComputerListStorage::migrateLegacyComputersIfNeeded()
{
    const QList<RemoteComputer> shared =
        ComputerJson::decodeStoredList(m_sharedUserDefaults->value(m_computersKey));
    const QList<RemoteComputer> legacy =
        ComputerJson::decodeStoredList(m_legacyUserDefaults->value(m_computersKey));
    if (!shared.isEmpty() || legacy.isEmpty())
        return;
    QString error;
    const QByteArray data = ComputerJson::encodeList(legacy, &error);
    if (data.isEmpty()) {
        LogManager::shared().log(QStringLiteral("Failed to migrate legacy computers: ") + error,
                                 QStringLiteral("ERROR"));
        return;
    }
    StoredListGuard::replace(*m_sharedUserDefaults, m_computersKey, data);
    LogManager::shared().log(
        QStringLiteral("Migrated %1 computers from legacy user defaults to the "
                       "shared app group")
            .arg(legacy.size()),
        QStringLiteral("PERSISTENCE"));
}

ComputerListStorage::Loaded ComputerListStorage::load()
{
    Loaded loaded;
    const QVariant blob = m_sharedUserDefaults->value(m_computersKey);
    if (!blob.isValid())
        return loaded;
    if (auto decoded = ComputerJson::decodeList(blob.toByteArray())) {
        loaded.status = Loaded::Status::decoded;
        loaded.computers = std::move(*decoded);
        // No save is queued yet, so the worker reads this after it is set.
        m_pendingSave->lastWritten = blob.toByteArray();
        return loaded;
    }
    loaded.status = Loaded::Status::undecodable;
    StoredListGuard::keepCopyIfUndecodable(*m_sharedUserDefaults, m_computersKey);
    return loaded;
}

void ComputerListStorage::save(const QList<RemoteComputer> &computers)
{
    // The stored form is made on the worker, so a save costs the main thread next to
    // nothing. A save not yet started is replaced by the newest one.
    bool schedule = false;
    {
        std::lock_guard lock(m_pendingSave->mutex);
        schedule = !m_pendingSave->computers.has_value();
        m_pendingSave->computers = computers;
    }
    if (!schedule)
        return;
    std::shared_ptr<PendingSave> pending = m_pendingSave;
    const QString key = m_computersKey;
    m_persistenceQueue->enqueue([pending, key] {
        QList<RemoteComputer> list;
        {
            std::lock_guard lock(pending->mutex);
            list = std::move(*pending->computers);
            pending->computers.reset();
        }
        for (RemoteComputer &computer : list)
            computer = storedForm(std::move(computer));
        QString error;
        const QByteArray data = ComputerJson::encodeList(list, &error);
        if (data.isEmpty()) {
            LogManager::shared().log(QStringLiteral("AppState: Failed to save computers: ") + error,
                                     QStringLiteral("ERROR"));
            return;
        }
        std::unique_ptr<QSettings> suite = SettingsFiles::openSharedSuite();
        if (!suite)
            suite = SettingsFiles::openStandard();
        StoredListGuard::replace(*suite, key, data, pending->lastWritten);
        pending->lastWritten = data;
        ++pending->writes;
    });
}

std::optional<QByteArray> ComputerListStorage::readThumbnail(const QUuid &id) const
{
    const QString directory = AppPaths::thumbnailsDirectory();
    if (directory.isEmpty())
        return std::nullopt;
    QFile file(thumbnailPath(directory, id));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

void ComputerListStorage::removeOrphanedThumbnails(const QList<RemoteComputer> &computers) const
{
    const QString directory = AppPaths::thumbnailsDirectory();
    if (directory.isEmpty() || !QFileInfo(directory).isDir())
        return;
    QSet<QString> ids;
    for (const RemoteComputer &computer : computers)
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

void ComputerListStorage::writeThumbnail(const QUuid &id, const QByteArray &data, QObject *context,
                                         std::function<void()> then)
{
    const QString directory = AppPaths::thumbnailsDirectory();
    m_thumbnailQueue->enqueue([id, data, directory, context, then = std::move(then)] {
        // Screen images are the user's alone, like the folder Telvane keeps them in.
        if (!directory.isEmpty() && PrivateFiles::makeFolder(directory, directory))
            PrivateFiles::write(thumbnailPath(directory, id), data);
        // The context outlives this queue, which drains before it goes; an event still
        // queued for a context that is gone is dropped by Qt.
        QMetaObject::invokeMethod(context, then, Qt::QueuedConnection);
    });
}

void ComputerListStorage::waitUntilIdle()
{
    m_thumbnailQueue->waitUntilIdle();
    m_persistenceQueue->waitUntilIdle();
}

int ComputerListStorage::listWriteCount() const
{
    return m_pendingSave->writes.load();
}
