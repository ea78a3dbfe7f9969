#pragma once

#include <QString>

// Where Telvane keeps its files, through QStandardPaths.
namespace AppPaths {

// "WardlineThumbnails" under the documents folder; empty when that is unknown.
QString thumbnailsDirectory();
// The app group's shared container: a folder named by the group identifier under the
// application data location; empty when that is unknown.
QString sharedContainerDirectory();
// The folder of the user's configuration files (QSettings files, known agents).
QString configurationDirectory();

} // namespace AppPaths
