#pragma once

#include <QDateTime>
#include <QSet>
#include <QString>

// Clean-up of the staging folder. Staged copies of replaced requests, of uploads that
// could not connect and of computers since removed stay behind; the console sweeps, once
// at start, those older than a week that nothing names. A younger file is never touched:
// telvanectl stages its copy before it writes the request that names it.
namespace StagedUploads {

inline constexpr int sweepAgeDays = 7;

// Deletes the files directly in `directory` last modified before `cutoff` whose path is
// not in `named` (a pending request's file, uploads under way). Staging sets a copy's
// modification time to when it was made. The number of files deleted.
int sweep(const QString &directory, const QSet<QString> &named, const QDateTime &cutoff);

} // namespace StagedUploads
