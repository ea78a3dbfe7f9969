#include "HttpSession.h"

#include <QCoreApplication>
#include <QPointer>

HttpSession::HttpSession(QObject *parent) : QObject(parent), m_manager(this)
{
    m_manager.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    m_manager.setTransferTimeout(transferTimeoutMs);
}

HttpSession &HttpSession::shared()
{
    // Owned by the application object, so it never outlives it.
    static QPointer<HttpSession> session;
    if (!session)
        session = new HttpSession(QCoreApplication::instance());
    return *session;
}
