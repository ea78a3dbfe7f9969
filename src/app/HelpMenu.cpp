#include "HelpMenu.h"

#include "model/LogManager.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QMenu>

HelpMenu::HelpMenu(QMenu *menu) : QObject(menu)
{
    for (const HelpMenuItem &item : HelpMenuItem::all()) {
        if (item.separatorBefore)
            menu->addSeparator();
        QAction *action = menu->addAction(QCoreApplication::translate("HelpMenu", item.text));
        // Keeps the About item where it belongs on every platform.
        action->setMenuRole(item.action == HelpMenuItem::Action::ShowAbout ? QAction::AboutRole
                                                                           : QAction::NoRole);
        connect(action, &QAction::triggered, this, [this, &item] { trigger(item); });
        m_actions.append(action);
    }
}

void HelpMenu::trigger(const HelpMenuItem &item)
{
    switch (item.action) {
    case HelpMenuItem::Action::ShowAbout:
        if (m_showAbout)
            m_showAbout();
        else
            LogManager::shared().logOnce(
                m_loggedNoAbout, QStringLiteral("The Help menu cannot show the About window yet"),
                QStringLiteral("WARN"));
        return;
    case HelpMenuItem::Action::ShowAssistant:
        if (!m_showAssistant)
            return LogManager::shared().logOnce(
                m_loggedNoAssistant,
                QStringLiteral("The Help menu cannot show the assistant panel yet"),
                QStringLiteral("WARN"));
        if (const std::optional<QUrl> address = item.address())
            m_showAssistant(*address);
        return;
    case HelpMenuItem::Action::OpenDownload:
    case HelpMenuItem::Action::OpenWebPage:
        if (const std::optional<QUrl> address = item.address()) {
            if (!QDesktopServices::openUrl(*address))
                LogManager::shared().log(
                    QStringLiteral("No handler opened %1").arg(address->toDisplayString()),
                    QStringLiteral("WARN"));
        }
        return;
    }
}
