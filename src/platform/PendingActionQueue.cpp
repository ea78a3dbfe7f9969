#include "PendingActionQueue.h"

#include "PendingActionKeys.h"
#include "SettingsFiles.h"
#include "model/UuidText.h"

#include <QFileInfo>
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

std::optional<QUuid> readComputerId(QSettings &suite, const char *key)
{
    return idFrom(suite.value(QLatin1String(key)));
}

std::optional<PendingActions::Upload> readUpload(QSettings &suite)
{
    const QVariant value = suite.value(QLatin1String(PendingActionKeys::fileUpload));
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
    return upload;
}

// The well-formed entries; nothing is removed here.
PendingActions read(QSettings &suite)
{
    PendingActions actions;
    actions.connection = readComputerId(suite, PendingActionKeys::connection);
    actions.disconnection = readComputerId(suite, PendingActionKeys::disconnection);
    actions.remoteControl = readComputerId(suite, PendingActionKeys::remoteControl);
    actions.stopRemoteControl = readComputerId(suite, PendingActionKeys::stopRemoteControl);
    actions.fileUpload = readUpload(suite);
    return actions;
}

void removeTaken(QSettings &suite, const PendingActions &actions)
{
    const std::pair<bool, const char *> entries[] = {
        {actions.connection.has_value(), PendingActionKeys::connection},
        {actions.disconnection.has_value(), PendingActionKeys::disconnection},
        {actions.remoteControl.has_value(), PendingActionKeys::remoteControl},
        {actions.stopRemoteControl.has_value(), PendingActionKeys::stopRemoteControl},
        {actions.fileUpload.has_value(), PendingActionKeys::fileUpload},
    };
    for (const auto &[isTaken, key] : entries) {
        if (isTaken)
            suite.remove(QLatin1String(key));
    }
}

} // namespace

QString stagedFileNamed(QSettings &suite)
{
    SettingsFiles::syncForReading(suite);
    const QVariant path = suite.value(QLatin1String(PendingActionKeys::fileUpload))
                              .toMap()
                              .value(QLatin1String(PendingActionKeys::uploadFileURL));
    return path.typeId() == QMetaType::QString ? path.toString() : QString();
}

PendingActions take(QSettings &suite)
{
    // QSettings caches the file per process; without this the console would not see
    // what telvanectl wrote.
    SettingsFiles::syncForReading(suite);
    // Most change notices come from the console's own saves: a first look without the
    // write lock, so that those cost no write (and cause no further notice).
    if (read(suite).isEmpty())
        return {};
    PendingActions actions;
    SettingsFiles::writeSynchronized(suite, [&](QSettings &settings) {
        actions = read(settings);
        removeTaken(settings, actions);
    });
    return actions;
}

} // namespace PendingActionQueue
