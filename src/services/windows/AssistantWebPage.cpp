#include "AssistantWebPage.h"

#include <QDesktopServices>
#include <QWebEngineNewWindowRequest>

AssistantWebPage::AssistantWebPage(QWebEngineProfile *profile, QObject *parent)
    : QWebEnginePage(profile, parent)
{
    connect(this, &QWebEnginePage::newWindowRequested, this,
            &AssistantWebPage::handleNewWindowRequest);
}

void AssistantWebPage::noteUserInput()
{
    m_lastUserInput.start();
}

bool AssistantWebPage::takeUserActivation()
{
    const bool active = m_lastUserInput.isValid() && m_lastUserInput.elapsed() <= userActivationMs;
    m_lastUserInput.invalidate();
    return active;
}

bool AssistantWebPage::acceptNavigationRequest(const QUrl &url, NavigationType type,
                                               bool isMainFrame)
{
    // A click is spent by the navigation it caused, and a new document starts without one; a
    // frame loading by itself leaves it alone.
    bool isClickedLink = false;
    if (type == NavigationTypeLinkClicked)
        isClickedLink = takeUserActivation();
    else if (isMainFrame)
        m_lastUserInput.invalidate();
    switch (m_policy.navigation(url, isMainFrame, isClickedLink)) {
    case AssistantNavigationPolicy::Decision::Allow:
        return true;
    case AssistantNavigationPolicy::Decision::Refuse:
        return false;
    case AssistantNavigationPolicy::Decision::RefuseAndOpenExternally:
        QDesktopServices::openUrl(url);
        return false;
    }
    return false;
}

void AssistantWebPage::handleNewWindowRequest(QWebEngineNewWindowRequest &request)
{
    // Not adopting the request drops the new window; its address may go to the browser.
    if (m_policy.opensPopUpExternally(request.requestedUrl(), request.isUserInitiated()))
        QDesktopServices::openUrl(request.requestedUrl());
}
