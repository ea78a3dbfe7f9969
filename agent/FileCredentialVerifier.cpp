#include "FileCredentialVerifier.h"

#include "CredentialsFile.h"

#include <QDateTime>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <QThread>

namespace {

constexpr qint64 rememberMs = 5 * 60 * 1000;

QByteArray randomKey()
{
    QByteArray key(32, Qt::Uninitialized);
    QRandomGenerator::system()->fillRange(reinterpret_cast<quint32 *>(key.data()),
                                          key.size() / int(sizeof(quint32)));
    return key;
}

} // namespace

FileCredentialVerifier::FileCredentialVerifier(QString path, LogFunction log)
    : m_path(std::move(path)), m_log(std::move(log)),
      m_hashSlots(qMax(2, QThread::idealThreadCount())), m_rememberKey(randomKey())
{
}

QByteArray FileCredentialVerifier::rememberedKey(const QString &username,
                                                 const QByteArray &storedHash,
                                                 const QString &password) const
{
    // Keyed with a per-process secret and bound to the stored hash, so a changed password
    // in the file is never answered from memory.
    QMessageAuthenticationCode mac(QCryptographicHash::Sha256, m_rememberKey);
    mac.addData(username.toUtf8() + '\0' + storedHash + '\0' + password.toUtf8());
    return mac.result();
}

bool FileCredentialVerifier::isRemembered(const QByteArray &key)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    QMutexLocker lock(&m_rememberedLock);
    const auto it = m_remembered.constFind(key);
    return it != m_remembered.constEnd() && *it > now;
}

bool FileCredentialVerifier::verify(const QString &username, const QString &password)
{
    QString error;
    const auto entries = CredentialsFile::read(m_path, &error);
    if (!entries && m_log)
        m_log(error);
    std::optional<CredentialsFile::Entry> found;
    for (const CredentialsFile::Entry &entry : entries.value_or(QList<CredentialsFile::Entry>{})) {
        if (entry.user == username)
            found = entry;
    }
    const QByteArray key =
        found ? rememberedKey(username, found->salt + found->hash, password) : QByteArray();
    if (found && isRemembered(key))
        return true;
    m_hashSlots.acquire();
    const QSemaphoreReleaser slot(m_hashSlots);
    if (found) {
        // Another check of the same login may have finished while this one waited.
        if (isRemembered(key))
            return true;
        if (!CredentialsFile::matches(*found, password))
            return false;
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        QMutexLocker lock(&m_rememberedLock);
        m_remembered.removeIf([now](auto it) { return it.value() <= now; });
        m_remembered.insert(key, now + rememberMs);
        return true;
    }
    // Same work for an unknown user as for a wrong password.
    static const CredentialsFile::Entry decoy =
        CredentialsFile::makeEntry(QStringLiteral("decoy"), QStringLiteral("decoy"));
    CredentialsFile::matches(decoy, password);
    return false;
}
