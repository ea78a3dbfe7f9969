#include "AssistantNavigationPolicy.h"

namespace {

bool isWebScheme(const QUrl &url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

QString withoutTrailingSlash(QString path)
{
    if (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}

} // namespace

AssistantNavigationPolicy::AssistantNavigationPolicy(QUrl chatUrl) : m_chatUrl(std::move(chatUrl))
{
}

bool AssistantNavigationPolicy::isInsideChatPage(const QUrl &url) const
{
    if (!isWebScheme(url))
        return false;
    // Two absent hosts compare equal; one absent host does not.
    if (url.host().compare(m_chatUrl.host(), Qt::CaseInsensitive) != 0)
        return false;
    const QString path = withoutTrailingSlash(url.path());
    const QString chatPath = withoutTrailingSlash(m_chatUrl.path());
    return path == chatPath || path.startsWith(chatPath + QLatin1Char('/'));
}

AssistantNavigationPolicy::Decision
AssistantNavigationPolicy::navigation(const QUrl &url, bool isMainFrame, bool isClickedLink) const
{
    // Frames inside the chat page (the vendor's widget) go wherever they like.
    if (url.isEmpty() || !isMainFrame || isInsideChatPage(url))
        return Decision::Allow;
    if (isClickedLink && canOpenExternally(url))
        return Decision::RefuseAndOpenExternally;
    return Decision::Refuse;
}

bool AssistantNavigationPolicy::opensPopUpExternally(const QUrl &url, bool isUserInitiated) const
{
    if (url.isEmpty() || !canOpenExternally(url))
        return false;
    return isInsideChatPage(url) || isUserInitiated;
}

bool AssistantNavigationPolicy::canOpenExternally(const QUrl &url)
{
    if (!url.isValid())
        return false;
    if (isWebScheme(url))
        return !url.host().isEmpty();
    return url.scheme().compare(QLatin1String("mailto"), Qt::CaseInsensitive) == 0;
}
