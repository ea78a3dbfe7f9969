#pragma once

#include <QString>

// How large a step an offered version is; the feed names it "Major", "Minor" or "Patch".
enum class UpdateType { major, minor, patch };

// The feed's type word, matched exactly; any other word, or none, is `minor`.
UpdateType updateTypeFromWord(const QString &word);
