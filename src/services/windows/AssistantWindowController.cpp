#include "AssistantWindowController.h"
#include "AssistantContentView.h"
#include "AssistantWebPage.h"
#include "AssistantWebView.h"

#include "model/LogManager.h"
#include "platform/WebHosts.h"
#include "services/WebEngineSupport.h"

#include <QApplication>
#include <QFile>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWebEngineProfile>
#include <QWebEngineScriptCollection>

// Resources of a static library are linked only when something names them.
static void initAssistantResources()
{
    Q_INIT_RESOURCE(assistant);
}

namespace {

AssistantWindowController *sharedController = nullptr;

QString cleanupScriptSource()
{
    initAssistantResources();
    QFile file(QStringLiteral(":/assistant/AssistantCleanup.js"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

std::optional<QString> probeWebEngine()
{
    return WebEngineSupport::whyUnavailable(WebEngineSupport::probe());
}

} // namespace

AssistantWindowController &AssistantWindowController::shared()
{
    if (!sharedController) {
        sharedController = new AssistantWindowController;
        // Gone when the event loop ends, while everything it uses still runs: deleted later,
        // from a post routine of the application object's destructor, it crashed in Qt Quick.
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, sharedController, [] {
            delete sharedController;
            sharedController = nullptr;
        });
    }
    return *sharedController;
}

std::optional<QUrl> AssistantWindowController::chatPageAddress()
{
    return WebHosts::webAddress(QStringLiteral("/aichat"));
}

void AssistantWindowController::showChatPage()
{
    if (const std::optional<QUrl> address = chatPageAddress())
        shared().show(*address);
}

AssistantWindowController::AssistantWindowController(QObject *parent)
    : AssistantWindowController(probeWebEngine(), parent)
{
}

AssistantWindowController::AssistantWindowController(std::optional<QString> unavailableReason,
                                                     QObject *parent)
    : QObject(parent), m_chatUrl(chatPageAddress().value_or(QUrl())),
      m_panel(new QWidget(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint)),
      m_content(new AssistantContentView(m_panel)),
      m_unavailableReason(std::move(unavailableReason))
{
    m_panel->setWindowTitle(tr("AI Assistant"));
    m_panel->setAccessibleName(tr("AI Assistant"));
    m_panel->resize(panelWidth, panelHeight);
    m_panel->setMinimumSize(panelWidth, minimumPanelHeight);
    m_panel->setMaximumSize(panelWidth, maximumPanelHeight);
    QPalette palette = m_panel->palette();
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    m_panel->setPalette(palette);
    m_panel->setAutoFillBackground(true);
    auto *layout = new QVBoxLayout(m_panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_content);
    // Closing only hides the panel; the window manager's close does the same.
    new QShortcut(QKeySequence::Close, m_panel, m_panel, &QWidget::close);

    m_loadTimeout.setSingleShot(true);
    m_loadTimeout.setInterval(defaultLoadTimeoutMs);
    m_releaseHiddenPage.setSingleShot(true);
    m_releaseHiddenPage.setInterval(defaultHiddenPageReleaseDelayMs);
    if (!m_unavailableReason)
        createWebView();
}

AssistantWindowController::~AssistantWindowController()
{
    // The page goes with the view, before the profile it belongs to.
    delete m_panel;
}

void AssistantWindowController::createWebView()
{
    m_profile = new QWebEngineProfile(QStringLiteral("Assistant"), this);
    m_webView = new AssistantWebView;
    m_page = new AssistantWebPage(m_profile, m_webView);
    m_page->setBackgroundColor(Qt::white);
    m_cleanupScript = cleanupScriptSource();
    QWebEngineScript script;
    script.setName(QStringLiteral("QuorvelAssistantCleanup"));
    script.setSourceCode(m_cleanupScript);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setRunsOnSubFrames(true);
    script.setWorldId(AssistantWebPage::scriptWorldId);
    m_page->scripts().insert(script);
    m_webView->setPage(m_page);
    m_content->setWebView(m_webView);

    connect(m_webView, &AssistantWebView::userInput, m_page, &AssistantWebPage::noteUserInput);
    connect(m_page, &QWebEnginePage::loadStarted, &m_loadTimeout, qOverload<>(&QTimer::start));
    connect(m_page, &QWebEnginePage::loadFinished, this,
            &AssistantWindowController::handleLoadFinished);
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this,
            &AssistantWindowController::handleRenderProcessTerminated);
    connect(&m_loadTimeout, &QTimer::timeout, m_page,
            [page = m_page] { page->triggerAction(QWebEnginePage::Stop); });
    // A hidden panel shows its page again only after a fresh load, so a panel left closed for
    // a while gives its render process back; one reopened soon after reuses it.
    connect(m_page, &QWebEnginePage::visibleChanged, this, [this](bool visible) {
        if (!visible && !m_panel->isVisible())
            m_releaseHiddenPage.start();
    });
    connect(&m_releaseHiddenPage, &QTimer::timeout, this, [this] {
        if (!m_panel->isVisible() && !m_page->isVisible())
            m_page->setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
    });
}

QWidget *AssistantWindowController::panel() const
{
    return m_panel;
}

bool AssistantWindowController::isShowingNotice() const
{
    return m_content->isShowingNotice();
}

void AssistantWindowController::show(const QUrl &url)
{
    m_chatUrl = url;
    m_releaseHiddenPage.stop();
    if (!m_panel->isVisible())
        centrePanel();
    if (m_unavailableReason) {
        showNotice(*m_unavailableReason);
    } else {
        m_page->policy().setChatUrl(url);
        m_content->showWebView();
        m_page->load(url);
        m_loadTimeout.start();
    }
    m_panel->show();
    m_panel->raise();
    m_panel->activateWindow();
    if (m_webView && !isShowingNotice())
        m_webView->setFocus();
}

void AssistantWindowController::centrePanel()
{
    const QWidget *active = QApplication::activeWindow();
    QScreen *screen =
        active && active != m_panel ? active->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame(QPoint(), m_panel->size());
    frame.moveCenter(screen->availableGeometry().center());
    m_panel->move(frame.topLeft());
}

void AssistantWindowController::handleLoadFinished()
{
    m_loadTimeout.stop();
    // Again in the main frame, in the injected copy's world: a page the injection missed is
    // cleaned too, and the guard keeps it to one observer.
    m_page->runJavaScript(m_cleanupScript, AssistantWebPage::scriptWorldId);
}

void AssistantWindowController::handleRenderProcessTerminated(
    QWebEnginePage::RenderProcessTerminationStatus status, int exitCode)
{
    QString reason;
    switch (status) {
    case QWebEnginePage::NormalTerminationStatus:
        return;
    case QWebEnginePage::AbnormalTerminationStatus:
        reason =
            QStringLiteral("its render process ended abnormally (exit status %1)").arg(exitCode);
        break;
    case QWebEnginePage::CrashedTerminationStatus:
        reason = QStringLiteral("its render process crashed (exit status %1)").arg(exitCode);
        break;
    case QWebEnginePage::KilledTerminationStatus:
        reason = QStringLiteral("its render process was killed");
        break;
    }
    m_loadTimeout.stop();
    showNotice(reason);
}

void AssistantWindowController::showNotice(const QString &reason)
{
    m_content->showNotice();
    if (m_loggedReasons.contains(reason))
        return;
    m_loggedReasons.insert(reason);
    LogManager::shared().log(QStringLiteral("The assistant cannot be shown: %1").arg(reason),
                             QStringLiteral("ERROR"));
}
