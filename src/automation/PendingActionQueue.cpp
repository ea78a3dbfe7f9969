#include "PendingActionQueue.h"

#include "PendingActionKeys.h"
#include "model/UuidText.h"
#include "platform/AppPaths.h"
#include "platform/SettingsFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QVariantMap>

namespace PendingActionQueue {
namespace {

std::optional<QUuid> idFrom(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return UuidText::parse(value.toString());
}

std::optional<QUuid> takeComputerId(QSettings &suite, const char *key, bool &removed)
{
    const QString name = QLatin1String(key);
    const std::optional<QUuid> id = idFrom(suite.value(name));
    if (id) {
        suite.remove(name);
        removed = true;
    }
    return id;
}

std::optional<PendingActions::Upload> takeUpload(QSettings &suite, bool &removed)
{
    const QString name = QLatin1String(PendingActionKeys::fileUpload);
    const QVariant value = suite.value(name);
    if (value.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariantMap entry = value.toMap();
    const QVariant path = entry.value(QLatin1String(PendingActionKeys::uploadFileURL));
    if (path.typeId() != QMetaType::QString)
        return std::nullopt;
    const auto id = idFrom(entry.value(QLatin1String(PendingActionKeys::uploadComputerId)));
    if (!id)
        return std::nullopt;
    const QVariant fileName = entry.value(QLatin1String(PendingActionKeys::uploadFileName));
    PendingActions::Upload upload;
    upload.filePath = path.toString();
    upload.fileName = fileName.typeId() == QMetaType::QString
                          ? fileName.toString()
                          : QFileInfo(upload.filePath).fileName();
    upload.computerId = *id;
    suite.remove(name);
    removed = true;
    return upload;
}

} // namespace

std::unique_ptr<QLockFile> lock()
{
    const QString directory = AppPaths::sharedContainerDirectory();
    if (directory.isEmpty() || !QDir().mkpath(directory))
        return nullptr;
    auto file = std::make_unique<QLockFile>(QDir(directory).filePath(QStringLiteral("queue.lock")));
    // A holder that died keeps the file; QLockFile removes it once its process is gone.
    file->setStaleLockTime(5000);
    if (!file->tryLock(5000))
        return nullptr;
    return file;
}

PendingActions take(QSettings &suite)
{
    const std::unique_ptr<QLockFile> held = lock();
    // QSettings caches the file per process; without this the console would not see
    // what telvanectl wrote.
    suite.sync();
    bool removed = false;
    PendingActions actions;
    actions.connection = takeComputerId(suite, PendingActionKeys::connection, removed);
    actions.disconnection = takeComputerId(suite, PendingActionKeys::disconnection, removed);
    actions.remoteControl = takeComputerId(suite, PendingActionKeys::remoteControl, removed);
    actions.stopRemoteControl =
        takeComputerId(suite, PendingActionKeys::stopRemoteControl, removed);
    actions.fileUpload = takeUpload(suite, removed);
    // Nothing is written when nothing was consumed, so a read caused by our own save
    // does not cause another change notice.
    if (removed)
        SettingsFiles::syncDurably(suite);
    return actions;
}

} // namespace PendingActionQueue
