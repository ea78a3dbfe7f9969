#include "UpdateFeed.h"

#include "platform/WebHosts.h"

#include <QCoreApplication>
#include <QStringDecoder>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace UpdateFeed {

QString invalidFormatMessage()
{
    return QCoreApplication::translate("UpdateFeed", "Invalid update feed format.");
}

QString unreadableMessage()
{
    return QCoreApplication::translate("UpdateFeed", "Could not read the update information.");
}

} // namespace UpdateFeed

namespace {

// An optional "+" or "-" and one or more ASCII digits, nothing else, within 64 bits.
// QString::toLongLong would also take blanks around the digits.
std::optional<qint64> readVersionPiece(QStringView piece)
{
    bool negative = false;
    qsizetype at = 0;
    if (!piece.isEmpty() && (piece[0] == u'+' || piece[0] == u'-')) {
        negative = piece[0] == u'-';
        at = 1;
    }
    if (at == piece.size())
        return std::nullopt;
    const std::uint64_t limit = negative ? std::uint64_t(std::numeric_limits<qint64>::max()) + 1
                                         : std::uint64_t(std::numeric_limits<qint64>::max());
    std::uint64_t value = 0;
    for (; at < piece.size(); ++at) {
        const char16_t c = piece[at].unicode();
        if (c < u'0' || c > u'9')
            return std::nullopt;
        const unsigned digit = unsigned(c - u'0');
        if (value > (limit - digit) / 10)
            return std::nullopt;
        value = value * 10 + digit;
    }
    if (!negative)
        return qint64(value);
    return value == limit ? std::numeric_limits<qint64>::min() : -qint64(value);
}

QList<qint64> versionNumbers(const QString &version)
{
    QList<qint64> numbers;
    for (const QStringView piece : QStringView(version).split(u'.')) {
        if (const std::optional<qint64> number = readVersionPiece(piece))
            numbers.append(*number);
    }
    return numbers;
}

bool isVersionText(const QString &version)
{
    if (version.isEmpty() || !version.contains(QLatin1Char('.')) ||
        version.size() > UpdateFeed::maximumVersionLength)
        return false;
    return std::none_of(version.cbegin(), version.cend(), [](QChar c) { return c.isSpace(); });
}

} // namespace

bool isNewerVersion(const QString &offered, const QString &running)
{
    const QString effectiveRunning =
        running.isEmpty() ? QString::fromLatin1(UpdateFeed::defaultRunningVersion) : running;
    QList<qint64> left = versionNumbers(offered);
    QList<qint64> right = versionNumbers(effectiveRunning);
    const qsizetype length = std::max(left.size(), right.size());
    left.resize(length, 0);
    right.resize(length, 0);
    for (qsizetype i = 0; i < length; ++i) {
        if (left[i] != right[i])
            return left[i] > right[i];
    }
    return false;
}

UpdateCheckOutcome parseUpdateFeed(const QByteArray &body, const QString &running)
{
    if (body.size() > UpdateFeed::maximumBodyBytes)
        return UpdateCheckOutcome::checkFailed(UpdateFeed::unreadableMessage());
    // Stateless: a sequence cut off at the end is an error too, not kept for more input.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(body);
    if (decoder.hasError())
        return UpdateCheckOutcome::checkFailed(UpdateFeed::unreadableMessage());
    text = text.trimmed();

    UpdateInfo info;
    QString notes;
    if (text.contains(QLatin1Char('|'))) {
        const QStringList parts = text.split(QLatin1Char('|'));
        if (parts.size() < 4)
            return UpdateCheckOutcome::checkFailed(UpdateFeed::invalidFormatMessage());
        info.version = parts[0].trimmed();
        info.type = updateTypeFromWord(parts[1].trimmed());
        notes = parts[2].trimmed();
        info.downloadURL = parts[3].trimmed();
    } else if (const qsizetype colon = text.indexOf(QLatin1Char(':')); colon >= 0) {
        QStringList pieces{text.left(colon).trimmed(), text.mid(colon + 1).trimmed()};
        pieces.removeAll(QString());
        info.version = pieces.value(0);
        notes = pieces.value(1);
    } else {
        info.version = text;
    }

    if (!isVersionText(info.version))
        return UpdateCheckOutcome::checkFailed(UpdateFeed::invalidFormatMessage());
    if (!isNewerVersion(info.version, running.trimmed()))
        return UpdateCheckOutcome::upToDate();
    if (!notes.isEmpty())
        info.releaseNotes = notes;
    return UpdateCheckOutcome::updateAvailable(std::move(info));
}

std::optional<QUrl> resolveInstallerURL(const UpdateInfo &info)
{
    const QString address = info.downloadURL.trimmed();
    // The scheme as written: QUrl lower-cases it, and "HTTPS://" is not what the feed promises.
    const QString writtenScheme = address.left(address.indexOf(QLatin1Char(':')));
    if (address.contains(QLatin1Char(':')) &&
        (writtenScheme == QLatin1String("https") || writtenScheme == QLatin1String("http"))) {
        const QUrl url(address, QUrl::StrictMode);
        if (url.isValid() && !url.host().isEmpty())
            return url;
    }
    const QString name = QString::fromLatin1(UpdateFeed::fallbackInstallerName).trimmed();
    if (name.isEmpty())
        return std::nullopt;
    return WebHosts::downloadAddress(QLatin1Char('/') + name + QLatin1String(".dmg"));
}
