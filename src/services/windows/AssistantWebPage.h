#pragma once

#include "services/AssistantNavigationPolicy.h"

#include <QElapsedTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

class QWebEngineNewWindowRequest;

// The assistant's page: keeps the main frame on the chat page, hands links the user clicked and
// pop-ups to the default browser (AssistantNavigationPolicy decides), and never opens a second
// view.
class AssistantWebPage : public QWebEnginePage {
    Q_OBJECT

public:
    // The world of the cleanup script: apart from the page's own scripts, so a page can neither
    // break it nor spoof its one-observer guard.
    static constexpr quint32 scriptWorldId = QWebEngineScript::ApplicationWorld;
    // A link navigation counts as the user's own only this soon after their last mouse press or
    // key press on the page (the browser engine's span of user activation): the engine reports
    // navigations that scripts start as clicked links too.
    static constexpr qint64 userActivationMs = 5000;

    AssistantWebPage(QWebEngineProfile *profile, QObject *parent);

    AssistantNavigationPolicy &policy() { return m_policy; }

    // A mouse press or key press on the page (the view reports them).
    void noteUserInput();

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;

private:
    void handleNewWindowRequest(QWebEngineNewWindowRequest &request);
    bool takeUserActivation();

    AssistantNavigationPolicy m_policy;
    QElapsedTimer m_lastUserInput;
};
