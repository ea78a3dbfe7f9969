#pragma once

#include "model/Error.h"
#include "model/RemoteComputer.h"

#include <QList>
#include <QString>
#include <QUuid>
#include <memory>
#include <optional>

class QSettings;

// The automation side's view of the shared storage: the stored computer list, the
// pending-action queue and the staging of files for queued uploads. Made fresh for each
// action; it never touches sessions or the console's state.
class SharedAppState {
public:
    // The shared suite, the standard store and the app group's shared container.
    SharedAppState();
    // `userDefaults` may be null (the suite could not be opened); an empty
    // `sharedContainer` means the container is unavailable.
    SharedAppState(std::unique_ptr<QSettings> userDefaults,
                   std::unique_ptr<QSettings> legacyUserDefaults, QString sharedContainer);
    ~SharedAppState();

    const QString suiteName;
    const QString computersKey;

    QSettings *userDefaults() const { return m_userDefaults.get(); }

    // The stored list after the legacy migration; empty when the suite is absent, the
    // key is absent or the list does not decode.
    QList<RemoteComputer> loadComputers();
    // The first computer whose display name contains `named`, ignoring case.
    std::optional<RemoteComputer> findComputer(const QString &named);

    // "AppIntentUploads" in the shared container; empty when that is unavailable.
    QString uploadDirectory() const;
    // Checks, copies and queues a file for upload. Failures carry the
    // "Telvane.AppIntentUpload" domain or, for file-system failures, "POSIX" (errno) or
    // "QFileDevice" (a failed copy).
    std::optional<Error> stageUpload(const QString &sourcePath, const QString &fileName,
                                     const QUuid &computerID);

    // Stores the id text under one of the four computer-id queue keys; skipped when the
    // suite is absent.
    void queueComputerAction(const char *key, const QUuid &computerID);

private:
    void writeQueueEntry(const QString &key, const QVariant &value);

    std::unique_ptr<QSettings> m_userDefaults;
    std::unique_ptr<QSettings> m_legacyUserDefaults;
    QString m_sharedContainer;
};
