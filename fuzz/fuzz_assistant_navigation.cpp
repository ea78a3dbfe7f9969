// Pages in the assistant panel choose the addresses it is asked to go to; whatever they are,
// the panel's decisions must hold together: nothing outside the web schemes counts as the chat
// page, frames are never stopped, and only addresses the desktop may open are handed to it.
// Input: the chat page's address, a newline, the address asked for.
#include "services/AssistantNavigationPolicy.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype newline = input.indexOf('\n');
    const QUrl chat(QString::fromUtf8(newline < 0 ? QByteArray() : input.left(newline)));
    const QUrl url(QString::fromUtf8(newline < 0 ? input : input.mid(newline + 1)));
    const AssistantNavigationPolicy policy(chat);
    using Decision = AssistantNavigationPolicy::Decision;

    const QString scheme = url.scheme().toLower();
    if (policy.isInsideChatPage(url) && scheme != QLatin1String("http") &&
        scheme != QLatin1String("https"))
        std::abort();
    const QString chatScheme = chat.scheme().toLower();
    if ((chatScheme == QLatin1String("http") || chatScheme == QLatin1String("https")) &&
        !policy.isInsideChatPage(chat))
        std::abort();
    for (const bool clicked : {false, true}) {
        if (policy.navigation(url, false, clicked) != Decision::Allow)
            std::abort();
        const Decision decision = policy.navigation(url, true, clicked);
        if (decision == Decision::RefuseAndOpenExternally &&
            (!clicked || !AssistantNavigationPolicy::canOpenExternally(url)))
            std::abort();
        if (policy.opensPopUpExternally(url, clicked) &&
            !AssistantNavigationPolicy::canOpenExternally(url))
            std::abort();
    }
    return 0;
}
