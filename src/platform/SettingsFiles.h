#pragma once

#include <QString>
#include <functional>
#include <memory>

class QSettings;

// Opens the two preference stores: the standard store (organisation "Quorvel",
// application "Telvane") and the shared suite named by the app group identifier, in the
// same configuration folder. QSettings replaces the file atomically and merges keys under
// a lock file, so the console and telvanectl never drop each other's keys.
namespace SettingsFiles {

std::unique_ptr<QSettings> openStandard();
// Null when the suite cannot be used (its folder cannot be created). A suite file that
// does not parse is moved aside ("….conf.corrupt-<time>", never deleted) so that later
// writes are not refused, and the copy is reported through SetAsideNotices.
std::unique_ptr<QSettings> openSharedSuite();
QString sharedSuitePath();

// Creates one of Telvane's own folders for the user alone (0700, and so are missing
// folders above it), narrowing it when it exists with a wider mode; false when it cannot
// be created.
bool makePrivateFolder(const QString &path);

// QSettings::sync() plus an fsync of the file and its folder; the file (0600) and its
// folder (0700) are kept for the user alone. Every write of a settings file ends here.
void syncDurably(QSettings &settings);

// Every write of the shared suite goes through here. QSettings notices another process's
// write only by the file's size and its time stamp in milliseconds, so a write of the same
// size within the same millisecond (one queue id replacing another), or one landing while
// it reads, would be missed and later overwritten with stale values. Writers are therefore
// serialised by lock files, move the time stamp on so that `change` sees the file as it
// is, and leave their write with a later stamp than any version before it.
void writeSynchronized(QSettings &settings, const std::function<void(QSettings &)> &change);

// QSettings::sync() for reading another process's writes: when a write lands during the
// read, the file is read again under the write lock, so the cache cannot keep older
// content under the newer time stamp (and a queued request stays visible).
void syncForReading(QSettings &settings);

} // namespace SettingsFiles
