// The update feed is whatever the web host sends. Whatever it is, the verdict must hold
// together: an offer is a plausible version newer than the running one, with an installer
// address, and the version order never says two versions are each newer than the other.
// Input: the running version, a newline, the feed's body.
#include "services/UpdateFeed.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype newline = input.indexOf('\n');
    const QString running =
        newline < 0 ? QString() : QString::fromUtf8(input.left(newline)).trimmed();
    const QByteArray body = newline < 0 ? input : input.mid(newline + 1);

    const UpdateCheckOutcome outcome = parseUpdateFeed(body, running);
    switch (outcome.kind) {
    case UpdateCheckOutcome::Kind::updateAvailable: {
        const UpdateInfo &info = outcome.info;
        if (info.version.isEmpty() || !info.version.contains(QLatin1Char('.')) ||
            info.version.size() > UpdateFeed::maximumVersionLength)
            std::abort();
        if (!isNewerVersion(info.version, running) || isNewerVersion(running, info.version))
            std::abort();
        if (info.releaseNotes && info.releaseNotes->isEmpty())
            std::abort();
        const std::optional<QUrl> installer = resolveInstallerURL(info);
        if (!installer || !installer->isValid() ||
            (installer->scheme() != QLatin1String("https") &&
             installer->scheme() != QLatin1String("http")))
            std::abort();
        break;
    }
    case UpdateCheckOutcome::Kind::checkFailed:
        if (outcome.message.isEmpty())
            std::abort();
        break;
    case UpdateCheckOutcome::Kind::upToDate:
        break;
    }
    // Two pieces of the body as versions, both ways round.
    const QString text = QString::fromUtf8(body);
    const QString left = text.section(QLatin1Char(' '), 0, 0);
    const QString right = text.section(QLatin1Char(' '), 1);
    if (isNewerVersion(left, right) && isNewerVersion(right, left))
        std::abort();
    if (isNewerVersion(left, left))
        std::abort();
    return 0;
}
