#pragma once

#include "HelpMenuItem.h"

#include <QObject>
#include <QUrl>
#include <functional>

class QAction;
class QMenu;

// Fills a Help menu with Telvane's commands (HelpMenuItem::all(), in order, with their
// separators). Web pages open with the desktop's handler; the About window and the assistant
// panel are reached through the functions set here. An address that cannot be formed opens
// nothing and shows nothing; a function not set yet shows nothing and logs that once.
class HelpMenu : public QObject {
    Q_OBJECT

public:
    using ShowAbout = std::function<void()>;
    using ShowAssistant = std::function<void(const QUrl &chatAddress)>;

    // Appends the items to `menu` and lives as long as it does.
    explicit HelpMenu(QMenu *menu);

    void setShowAbout(ShowAbout showAbout) { m_showAbout = std::move(showAbout); }
    void setShowAssistant(ShowAssistant showAssistant)
    {
        m_showAssistant = std::move(showAssistant);
    }

    // The menu's action for `item`, in the order of HelpMenuItem::all().
    QAction *action(qsizetype item) const { return m_actions.value(item); }

    void trigger(const HelpMenuItem &item);

private:
    QList<QAction *> m_actions;
    ShowAbout m_showAbout;
    ShowAssistant m_showAssistant;
    bool m_loggedNoAbout = false;
    bool m_loggedNoAssistant = false;
};
