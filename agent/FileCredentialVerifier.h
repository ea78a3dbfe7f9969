#pragma once

#include "ZEKTCredentialVerifier.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QSemaphore>
#include <functional>

// Checks logins against a credentials file (read on every attempt, so a password set
// while the agent runs takes effect at once). An unknown user costs the same hash as a
// known one, so the answer never tells whether the user exists.
class FileCredentialVerifier : public ZEKTCredentialVerifier {
public:
    using LogFunction = std::function<void(const QString &line)>;
    FileCredentialVerifier(QString path, LogFunction log);

    bool verify(const QString &username, const QString &password) override;

private:
    QByteArray rememberedKey(const QString &username, const QByteArray &storedHash,
                             const QString &password) const;
    bool isRemembered(const QByteArray &key);

    QString m_path;
    LogFunction m_log;
    // Each check holds 16 MiB for the hash: a fleet of agents logging in at once runs
    // as many checks in parallel as there are cores, not hundreds.
    QSemaphore m_hashSlots;
    // Logins that succeeded recently, as keyed digests with their expiry, so a fleet of
    // sessions reconnecting with the same password pays the slow hash once, not per
    // session. Failures are never remembered.
    const QByteArray m_rememberKey;
    QMutex m_rememberedLock;
    QHash<QByteArray, qint64> m_remembered;
};
