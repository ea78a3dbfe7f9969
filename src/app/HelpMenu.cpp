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
            logUnavailable(m_loggedNoAbout, QStringLiteral("the About window"));
        return;
    case HelpMenuItem::Action::ShowAssistant:
        if (!m_showAssistant)
            return logUnavailable(m_loggedNoAssistant, QStringLiteral("the assistant panel"));
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

void HelpMenu::logUnavailable(bool &logged, const QString &what)
{
    if (std::exchange(logged, true))
        return;
    LogManager::shared().log(QStringLiteral("The Help menu cannot show %1 yet").arg(what),
                             QStringLiteral("WARN"));
}
