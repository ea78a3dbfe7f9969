#include "FileCredentialVerifier.h"

#include "CredentialsFile.h"

#include <QThread>

FileCredentialVerifier::FileCredentialVerifier(QString path, LogFunction log)
    : m_path(std::move(path)), m_log(std::move(log)),
      m_hashSlots(qMax(2, QThread::idealThreadCount()))
{
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
    m_hashSlots.acquire();
    const QSemaphoreReleaser slot(m_hashSlots);
    if (found)
        return CredentialsFile::matches(*found, password);
    // Same work for an unknown user as for a wrong password.
    static const CredentialsFile::Entry decoy =
        CredentialsFile::makeEntry(QStringLiteral("decoy"), QStringLiteral("decoy"));
    CredentialsFile::matches(decoy, password);
    return false;
}
