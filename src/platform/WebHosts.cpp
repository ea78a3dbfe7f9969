#include "WebHosts.h"

#include "model/LogManager.h"

#include <QMutex>
#include <QSet>

namespace WebHosts {
namespace {

QString setting(const char *variable, const char *fallback)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariable(variable)
                                               : QString::fromLatin1(fallback);
}

// Each bad base is reported once, however often an address is asked for.
void reportOnce(const QString &base, const QString &reason)
{
    static QMutex mutex;
    static QSet<QString> reported;
    {
        QMutexLocker lock(&mutex);
        if (reported.contains(base))
            return;
        reported.insert(base);
    }
    LogManager::shared().log(
        QStringLiteral("Web address base \"%1\" not used: %2").arg(base, reason),
        QStringLiteral("WARN"));
}

std::optional<QUrl> addressOn(const char *variable, const char *fallback, const QString &path,
                              const QString &query)
{
    const QString base = setting(variable, fallback);
    QString whyNot;
    std::optional<QUrl> address = formAddress(base, path, query, &whyNot);
    if (!address)
        reportOnce(base, whyNot);
    return address;
}

} // namespace

std::optional<QUrl> formAddress(const QString &base, const QString &path, const QString &query,
                                QString *whyNot)
{
    const auto fail = [whyNot](const QString &reason) -> std::optional<QUrl> {
        if (whyNot)
            *whyNot = reason;
        return std::nullopt;
    };
    if (base.isEmpty())
        return fail(QStringLiteral("it is empty"));
    for (const QChar c : base) {
        if (c.isSpace() || c.unicode() < 0x21 || c.unicode() > 0x7e)
            return fail(QStringLiteral("it contains a blank or a character outside ASCII"));
    }
    const QUrl url(base, QUrl::StrictMode);
    if (!url.isValid())
        return fail(url.errorString());
    if (url.scheme() != QLatin1String("https") && url.scheme() != QLatin1String("http"))
        return fail(QStringLiteral("the scheme is not http or https"));
    if (url.host().isEmpty())
        return fail(QStringLiteral("it has no host"));
    if (!url.userInfo().isEmpty() || url.hasQuery() || url.hasFragment())
        return fail(QStringLiteral("it has more than a scheme, a host and a port"));
    if (url.port() == 0)
        return fail(QStringLiteral("port 0 cannot be reached"));
    if (!url.path().isEmpty() && url.path() != QLatin1String("/"))
        return fail(QStringLiteral("it has a path"));
    if (!path.isEmpty() && !path.startsWith(QLatin1Char('/')))
        return fail(QStringLiteral("the path does not start with \"/\""));

    QUrl address = url;
    address.setPath(path.isEmpty() ? QStringLiteral("/") : path, QUrl::StrictMode);
    if (!query.isEmpty())
        address.setQuery(query, QUrl::StrictMode);
    if (!address.isValid())
        return fail(address.errorString());
    return address;
}

std::optional<QUrl> webAddress(const QString &path, const QString &query)
{
    return addressOn("TELVANE_WEB_HOST", defaultWebHost, path, query);
}

std::optional<QUrl> downloadAddress(const QString &path, const QString &query)
{
    return addressOn("TELVANE_DOWNLOAD_HOST", defaultDownloadHost, path, query);
}

QString webDomain()
{
    return setting("TELVANE_WEB_DOMAIN", defaultWebDomain);
}

QString supportEmail()
{
    return setting("TELVANE_SUPPORT_EMAIL", defaultSupportEmail);
}

} // namespace WebHosts
