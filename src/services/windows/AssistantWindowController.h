#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>
#include <QUrl>
#include <QWebEnginePage>
#include <optional>

class AssistantContentView;
class AssistantWebPage;
class AssistantWebView;
class QWebEngineProfile;
class QWidget;

// The assistant panel: a floating tool window, 500 pixels wide, that shows the maker's chat
// page and keeps the user inside it. One panel per process, made on first use and kept;
// closing it only hides it (a page left hidden for a while is released, as every show loads it
// afresh anyway). Main thread only.
//
// When the web engine cannot run here, or its render process ends, the panel shows one plain
// sentence instead and the reason is logged once.
class AssistantWindowController : public QObject {
    Q_OBJECT

public:
    static constexpr int panelWidth = 500;
    static constexpr int panelHeight = 600;
    static constexpr int minimumPanelHeight = 400;
    static constexpr int maximumPanelHeight = 1200;
    // The engine's load() never gives up on its own.
    static constexpr int defaultLoadTimeoutMs = 60000;
    // How long a closed panel keeps its page (and the page's render process).
    static constexpr int defaultHiddenPageReleaseDelayMs = 120000;

    // The one panel of the process, made on first use; deleted when the application's event
    // loop ends (aboutToQuit), before the web engine shuts down. Needs the application object.
    static AssistantWindowController &shared();

    // The chat page on the maker's web host, or none when the address cannot be formed.
    static std::optional<QUrl> chatPageAddress();
    // What the Help menu's "AI Assistant" does: the shared panel with the chat page. An address
    // that cannot be formed opens nothing and reports nothing.
    static void showChatPage();

    // Looks up whether the web engine can run here.
    explicit AssistantWindowController(QObject *parent = nullptr);
    // With the answer given: `unavailableReason` set means the web engine is never started.
    AssistantWindowController(std::optional<QString> unavailableReason, QObject *parent);
    ~AssistantWindowController() override;

    // Shows the panel with `url` (centred when it was not visible), loads the page afresh every
    // time, raises and activates it.
    void show(const QUrl &url);

    const QUrl &chatUrl() const { return m_chatUrl; }
    QWidget *panel() const;
    // None when the web engine cannot run here.
    AssistantWebView *webView() const { return m_webView; }
    bool isShowingNotice() const;

    // Tests and benchmarks shorten them.
    void setLoadTimeout(int milliseconds) { m_loadTimeout.setInterval(milliseconds); }
    void setHiddenPageReleaseDelay(int milliseconds)
    {
        m_releaseHiddenPage.setInterval(milliseconds);
    }

private:
    void createWebView();
    void centrePanel();
    void handleLoadFinished();
    void handleRenderProcessTerminated(QWebEnginePage::RenderProcessTerminationStatus status,
                                       int exitCode);
    void showNotice(const QString &reason);

    QUrl m_chatUrl;
    QWidget *m_panel;
    AssistantContentView *m_content;
    QWebEngineProfile *m_profile = nullptr;
    AssistantWebView *m_webView = nullptr;
    AssistantWebPage *m_page = nullptr;
    QString m_cleanupScript;
    QTimer m_loadTimeout;
    QTimer m_releaseHiddenPage;
    std::optional<QString> m_unavailableReason;
    QSet<QString> m_loggedReasons;
};
