#include "DiskImageDownloadHostView.h"
#include "DiskImageDownloadSession.h"

#include "services/WebEngineSupport.h"

#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>

DiskImageDownloadHostView::DiskImageDownloadHostView(DiskImageDownloadSession *session,
                                                     QWidget *parent)
    : QWidget(parent), m_session(session)
{
    setFixedSize(1, 1);
    // The engine ends the whole process when it cannot start, so it is asked first.
    if (const std::optional<QString> reason =
            WebEngineSupport::whyUnavailable(WebEngineSupport::probe())) {
        session->setUnavailableReason(*reason);
        return;
    }
    m_profile = new QWebEngineProfile(this); // no name: off the record
    m_webView = new QWebEngineView(this);
    m_webView->setPage(new QWebEnginePage(m_profile, m_webView));
    m_webView->setFixedSize(1, 1);
    m_webView->hide();
    session->setWebView(m_webView);
}

DiskImageDownloadHostView::~DiskImageDownloadHostView()
{
    if (m_session && m_session->webView() == m_webView)
        m_session->setWebView(nullptr);
    // The page goes before the profile it belongs to.
    delete m_webView;
}
