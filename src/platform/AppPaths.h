#pragma once

#include <QString>

// Where Telvane keeps its files, through QStandardPaths.
namespace AppPaths {

// "WardlineThumbnails" under the documents folder; empty when that is unknown.
QString thumbnailsDirectory();
// The app group's shared container: a folder named by the group identifier under the
// application data location; empty when that is unknown.
QString sharedContainerDirectory();
// "AppIntentUploads" in the shared container, where telvanectl stages files for queued
// uploads; empty when the container is unknown.
QString stagedUploadsDirectory(const QString &sharedContainer = sharedContainerDirectory());
// The folder of the user's configuration files (QSettings files, known agents).
QString configurationDirectory();

} // namespace AppPaths
