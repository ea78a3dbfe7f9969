#pragma once

#include <QByteArray>
#include <QString>

class QSettings;

// The computer list in the shared suite is only ever replaced through here. A stored list
// that does not decode (a port above 65535 written by hand, say) loads as empty, so the
// next write would lose it silently: before anything replaces it, the whole suite file is
// copied beside itself ("….conf.undecodable-<time>", the five newest kept) and the copy
// is reported through SetAsideNotices.
namespace StoredListGuard {

inline constexpr int keptCopies = 5;

// Stores `data` under `key` through SettingsFiles::writeSynchronized, keeping a copy first
// when the value there does not decode. `knownGood` is a value this process stored itself
// (empty: none); finding it needs no decoding.
void replace(QSettings &suite, const QString &key, const QByteArray &data,
             const QByteArray &knownGood = {});

// At load: when the value under `key` does not decode, copies the suite file aside now,
// since the next save would replace it. The copy's path; empty when the value decodes, is
// absent, or no copy could be made.
QString keepCopyIfUndecodable(QSettings &suite, const QString &key);

} // namespace StoredListGuard
