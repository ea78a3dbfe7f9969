#include "HelpMenuItem.h"

#include "platform/WebHosts.h"

#include <QtGlobal>

std::optional<QUrl> HelpMenuItem::address() const
{
    const QString pathText = QString::fromLatin1(path);
    const QString queryText = QString::fromLatin1(query);
    switch (action) {
    case Action::OpenDownload:
        return WebHosts::downloadAddress(pathText, queryText);
    case Action::ShowAssistant:
    case Action::OpenWebPage:
        return WebHosts::webAddress(pathText, queryText);
    case Action::ShowAbout:
        break;
    }
    return std::nullopt;
}

const QList<HelpMenuItem> &HelpMenuItem::all()
{
    using A = Action;
    static const QList<HelpMenuItem> items = {
        {QT_TRANSLATE_NOOP("HelpMenu", "Download TelvaneAgent (freeware)"), A::OpenDownload,
         "/TelvaneAgent.dmg", "", true},
        {QT_TRANSLATE_NOOP("HelpMenu", "AI Assistant"), A::ShowAssistant, "/aichat", "", true},
        {QT_TRANSLATE_NOOP("HelpMenu", "Community"), A::OpenWebPage, "/support", "", true},
        {QT_TRANSLATE_NOOP("HelpMenu", "Frequently Asked Questions"), A::OpenWebPage,
         "/support/faq", "", false},
        {QT_TRANSLATE_NOOP("HelpMenu", "Share a Bug Report"), A::OpenWebPage,
         "/support/ticket_create", "category=Bug%20Report", false},
        {QT_TRANSLATE_NOOP("HelpMenu", "Send a Feature Request"), A::OpenWebPage,
         "/support/ticket_create", "category=Feature%20Request", false},
        // On Linux the About item closes the Help menu.
        {QT_TRANSLATE_NOOP("HelpMenu", "About Telvane"), A::ShowAbout, "", "", true},
    };
    return items;
}
