#pragma once

#include <QUrl>

// Keeps the assistant panel on its one chat page: which navigations its web view may make and
// which addresses go to the default browser instead. Plain logic, so it is tested without a
// web view.
class AssistantNavigationPolicy {
public:
    enum class Decision {
        Allow,
        Refuse,
        RefuseAndOpenExternally,
    };

    explicit AssistantNavigationPolicy(QUrl chatUrl = {});

    const QUrl &chatUrl() const { return m_chatUrl; }
    void setChatUrl(const QUrl &chatUrl) { m_chatUrl = chatUrl; }

    // The chat page itself or a page below it: http or https, the same host ignoring case
    // (the port is not compared), and the chat path or a path under it; one trailing "/" on
    // either path does not count.
    bool isInsideChatPage(const QUrl &url) const;

    // One navigation of the web view. `isClickedLink`: the user clicked a link (or pressed a
    // key on one); redirects and navigations a script started are not.
    Decision navigation(const QUrl &url, bool isMainFrame, bool isClickedLink) const;

    // A page asking for a new window. No second view is ever made; the answer is whether the
    // address goes to the default browser.
    bool opensPopUpExternally(const QUrl &url, bool isUserInitiated) const;

    // Addresses the console hands to the desktop at all: web pages and mail. A page must never
    // make it open a local file or start the handler of some other scheme.
    static bool canOpenExternally(const QUrl &url);

private:
    QUrl m_chatUrl;
};
