#pragma once

#include <QPointer>
#include <QWidget>

class DiskImageDownloadSession;
class QWebEngineProfile;
class QWebEngineView;

// The download session's web view: a 1 × 1 widget holding a hidden 1 × 1 web view on a
// profile of its own, off the record, so installer downloads share nothing with the assistant
// and leave no cookies or cache behind. Made with the update sheet; when it goes, the session
// is detached. Where the web engine cannot run, no view is made and the session is told why.
class DiskImageDownloadHostView : public QWidget {
    Q_OBJECT

public:
    DiskImageDownloadHostView(DiskImageDownloadSession *session, QWidget *parent = nullptr);
    ~DiskImageDownloadHostView() override;

    QWebEngineView *webView() const { return m_webView; }

private:
    QPointer<DiskImageDownloadSession> m_session;
    QWebEngineProfile *m_profile = nullptr;
    QWebEngineView *m_webView = nullptr;
};
