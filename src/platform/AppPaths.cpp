#include "AppPaths.h"

#include "AppIdentity.h"

#include <QDir>
#include <QStandardPaths>

namespace AppPaths {

QString thumbnailsDirectory()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents.isEmpty())
        return {};
    return QDir(documents).filePath(QStringLiteral("WardlineThumbnails"));
}

QString sharedContainerDirectory()
{
    // GenericDataLocation + organisation keeps the path independent of the
    // executable's name, so the console and telvanectl agree on it.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (data.isEmpty())
        return {};
    return QDir(data).filePath(QLatin1String(AppIdentity::organizationName) + QLatin1Char('/') +
                               QLatin1String(AppIdentity::appGroupIdentifier));
}

QString stagedUploadsDirectory(const QString &sharedContainer)
{
    if (sharedContainer.isEmpty())
        return {};
    return QDir(sharedContainer).filePath(QStringLiteral("AppIntentUploads"));
}

QString configurationDirectory()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(config).filePath(QLatin1String(AppIdentity::organizationName));
}

} // namespace AppPaths
