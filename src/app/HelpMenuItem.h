#pragma once

#include <QList>
#include <QUrl>
#include <optional>

// One command of the Help menu: its text, what it does and, for the web pages, where it goes.
// The table of all of them, in menu order, is `all()`.
struct HelpMenuItem {
    enum class Action {
        OpenDownload,  // a file on the download host, with the desktop's handler
        ShowAssistant, // the assistant panel with a page of the web host
        OpenWebPage,   // a page of the web host, with the desktop's handler
        ShowAbout,     // the shared About window
    };

    // The English text, translated in the context "HelpMenu".
    const char *text;
    Action action;
    const char *path;
    const char *query; // percent-encoded
    bool separatorBefore;

    // The address the item goes to; none for the About item and for an address that cannot be
    // formed (a bad host override, logged once by WebHosts).
    std::optional<QUrl> address() const;

    static const QList<HelpMenuItem> &all();
};
