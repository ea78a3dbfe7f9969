#pragma once

#include "model/RemoteComputer.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>
#include <functional>
#include <memory>
#include <optional>

class QSettings;
class SerialQueue;

// Where the computer list and its thumbnails are kept: the shared suite (with the legacy
// copy in the standard store), the thumbnail files, and the background queues that write
// both. Saves not yet started are folded into the newest, so the last save wins and a
// burst of changes costs a few writes. Lives on the main thread; the writes run off it.
class ComputerListStorage {
public:
    explicit ComputerListStorage(QString computersKey);
    ~ComputerListStorage();

    ComputerListStorage(const ComputerListStorage &) = delete;
    ComputerListStorage &operator=(const ComputerListStorage &) = delete;

    struct Loaded {
        enum class Status { absent, decoded, undecodable };
        Status status = Status::absent;
        QList<RemoteComputer> computers;
    };

    // Copies the legacy list into the shared suite when the suite has none.
    void migrateLegacyComputersIfNeeded();
    // The stored list. One that does not decode loads as empty and is copied aside with
    // the whole suite file now, since the next save replaces it.
    Loaded load();
    // Queues a write of the list's stored form; the list is shared, not copied.
    void save(const QList<RemoteComputer> &computers);

    // The thumbnail file of a computer; none when it is missing or unreadable.
    std::optional<QByteArray> readThumbnail(const QUuid &id) const;
    // Deletes every entry of the thumbnails folder that names none of these computers.
    void removeOrphanedThumbnails(const QList<RemoteComputer> &computers) const;
    // Writes the file off the main thread; then `then` runs on `context`'s thread, whether
    // the write succeeded or not. `context` must outlive this object.
    void writeThumbnail(const QUuid &id, const QByteArray &data, QObject *context,
                        std::function<void()> then);

    // Blocks until every queued write has reached the disk. Tests and benchmarks only.
    void waitUntilIdle();
    // Disk writes of the list so far. Tests and benchmarks only.
    int listWriteCount() const;
    SerialQueue &persistenceQueueForTesting() { return *m_persistenceQueue; }

private:
    struct PendingSave;

    const QString m_computersKey;
    std::unique_ptr<QSettings> m_sharedUserDefaults;
    std::unique_ptr<QSettings> m_legacyUserDefaults;
    std::unique_ptr<SerialQueue> m_persistenceQueue;
    std::unique_ptr<SerialQueue> m_thumbnailQueue;
    std::shared_ptr<PendingSave> m_pendingSave;
};
