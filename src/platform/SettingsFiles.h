#pragma once

#include <QString>
#include <memory>

class QSettings;

// Opens the two preference stores: the standard store (organisation "Quorvel",
// application "Telvane") and the shared suite named by the app group identifier, in the
// same configuration folder. QSettings replaces the file atomically and merges keys under
// a lock file, so the console and telvanectl never drop each other's keys.
namespace SettingsFiles {

std::unique_ptr<QSettings> openStandard();
// Null when the suite cannot be used (its folder cannot be created). A suite file that
// does not parse is moved aside (".corrupt" suffix, never deleted) so that later writes
// are not refused.
std::unique_ptr<QSettings> openSharedSuite();
QString sharedSuitePath();

// QSettings::sync() plus an fsync of the file and its folder.
void syncDurably(QSettings &settings);

} // namespace SettingsFiles
