#pragma once

#include "UpdateCheckOutcome.h"
#include "UpdateInfo.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

// The update feed: one line of text on the maker's web host, in one of three forms
//   2.1.0|Major|Bug fixes|https://…/Telvane.dmg   version, type word, notes, installer
//   2.1.0: Bug fixes                               version and notes
//   2.1.0                                          version only
// Stateless and fed with whatever the server sent, so it is fuzzed.
namespace UpdateFeed {

// Larger bodies are not read at all.
inline constexpr qsizetype maximumBodyBytes = 64 * 1024;
// A version longer than this, or with white space inside, is not a version (an error page
// served with status 200 must never become an offer).
inline constexpr qsizetype maximumVersionLength = 64;
// What an empty running version counts as.
inline constexpr char defaultRunningVersion[] = "1.0.0";
// The installer's file name on the download host when the feed gives no usable address.
inline constexpr char fallbackInstallerName[] = "Telvane";

QString invalidFormatMessage();
QString unreadableMessage();

} // namespace UpdateFeed

// The outcome for a feed `body` (raw bytes, decoded here as strict UTF-8) against the
// `running` version: upToDate, updateAvailable or checkFailed with the reason.
UpdateCheckOutcome parseUpdateFeed(const QByteArray &body, const QString &running);

// Whether `offered` is newer than `running`: their dot-separated decimal pieces (an optional
// sign and ASCII digits within 64 bits; other pieces are dropped, not counted as zero) padded
// with zeros, compared at the first difference.
bool isNewerVersion(const QString &offered, const QString &running);

// The installer address of `info`: its download address when that is written with the scheme
// "https" or "http" and names a host, else "/Telvane.dmg" on the download host; none when that
// cannot be formed either.
std::optional<QUrl> resolveInstallerURL(const UpdateInfo &info);
