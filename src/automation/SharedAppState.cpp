#include "SharedAppState.h"

#include "AppIntentUploadError.h"
#include "model/ComputerJson.h"
#include "model/TransferLimits.h"
#include "model/UuidText.h"
#include "platform/AppIdentity.h"
#include "platform/AppPaths.h"
#include "platform/PendingActionKeys.h"
#include "platform/SettingsFiles.h"
#include "platform/StoredListGuard.h"
#include "posix/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QVariantMap>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace {

Error posixError(int code, const QString &path)
{
    return Error{QStringLiteral("POSIX"), code,
                 QString::fromLocal8Bit(std::strerror(code)) + QStringLiteral(": ") + path};
}

} // namespace

SharedAppState::SharedAppState()
    : SharedAppState(SettingsFiles::openSharedSuite(), SettingsFiles::openStandard(),
                     AppPaths::sharedContainerDirectory())
{
}

SharedAppState::SharedAppState(std::unique_ptr<QSettings> userDefaults,
                               std::unique_ptr<QSettings> legacyUserDefaults,
                               QString sharedContainer)
    : suiteName(QLatin1String(AppIdentity::appGroupIdentifier)),
      computersKey(QStringLiteral("remoteComputers")), m_userDefaults(std::move(userDefaults)),
      m_legacyUserDefaults(std::move(legacyUserDefaults)),
      m_sharedContainer(std::move(sharedContainer))
{
}

SharedAppState::~SharedAppState() = default;

QList<RemoteComputer> SharedAppState::loadComputers()
{
    if (!m_userDefaults)
        return {};
    SettingsFiles::syncForReading(*m_userDefaults);
    if (m_legacyUserDefaults &&
        ComputerJson::decodeStoredList(m_userDefaults->value(computersKey)).isEmpty()) {
        const QList<RemoteComputer> legacy =
            ComputerJson::decodeStoredList(m_legacyUserDefaults->value(computersKey));
        if (!legacy.isEmpty()) {
            const QByteArray data = ComputerJson::encodeList(legacy);
            if (!data.isEmpty())
                StoredListGuard::replace(*m_userDefaults, computersKey, data);
        }
    }
    return ComputerJson::decodeStoredList(m_userDefaults->value(computersKey));
}

std::optional<RemoteComputer> SharedAppState::findComputer(const QString &named)
{
    const QList<RemoteComputer> computers = loadComputers();
    for (const RemoteComputer &computer : computers) {
        if (computer.displayName().contains(named, Qt::CaseInsensitive))
            return computer;
    }
    return std::nullopt;
}

QString SharedAppState::uploadDirectory() const
{
    return AppPaths::stagedUploadsDirectory(m_sharedContainer);
}

std::optional<Error> SharedAppState::stageUpload(const QString &sourcePath, const QString &fileName,
                                                 const QUuid &computerID)
{
    struct stat info {};
    if (::stat(QFile::encodeName(sourcePath).constData(), &info) != 0)
        return posixError(errno, sourcePath);
    if (!S_ISREG(info.st_mode) || info.st_size < 1)
        return AppIntentUploadError::make(AppIntentUploadError::notANonEmptyRegularFile);
    if (qint64(info.st_size) > TransferLimits::maxFileTransferSize)
        return AppIntentUploadError::make(AppIntentUploadError::exceedsTransferLimit);

    const QString directory = uploadDirectory();
    if (directory.isEmpty())
        return AppIntentUploadError::make(AppIntentUploadError::sharedDirectoryUnavailable);
    const QString destination = QDir(directory).filePath(QStringLiteral("appintents_upload_") +
                                                         UuidText::format(QUuid::createUuid()));
    // Staged copies may be private documents: the organisation's data folder and
    // everything in it are for the user alone.
    errno = 0;
    if (!PrivateFiles::makeFolder(directory, QFileInfo(m_sharedContainer).absolutePath()))
        return posixError(errno ? errno : EACCES, directory);

    QFile source(sourcePath);
    if (!source.copy(destination)) {
        // QFile::copy leaves no partial destination behind.
        return Error{QStringLiteral("QFileDevice"), int(source.error()),
                     source.errorString() + QStringLiteral(": ") + sourcePath};
    }
    // The copy took the source's mode; nobody else can enter the folder meanwhile.
    PrivateFiles::restrictFile(destination);

    QVariantMap entry;
    entry.insert(QLatin1String(PendingActionKeys::uploadFileURL), destination);
    entry.insert(QLatin1String(PendingActionKeys::uploadFileName), fileName);
    entry.insert(QLatin1String(PendingActionKeys::uploadComputerId), UuidText::format(computerID));
    writeQueueEntry(QLatin1String(PendingActionKeys::fileUpload), entry);
    return std::nullopt;
}

void SharedAppState::queueComputerAction(const char *key, const QUuid &computerID)
{
    writeQueueEntry(QLatin1String(key), UuidText::format(computerID));
}

void SharedAppState::writeQueueEntry(const QString &key, const QVariant &value)
{
    if (!m_userDefaults)
        return;
    SettingsFiles::writeSynchronized(*m_userDefaults,
                                     [&](QSettings &settings) { settings.setValue(key, value); });
}
