#include "CrashReportUpload.h"

#include "CrashReport.h"
#include "platform/WebHosts.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUuid>

CrashReportUpload::CrashReportUpload(QNetworkAccessManager &manager, QObject *parent)
    : QObject(parent), m_manager(manager)
{
}

bool CrashReportUpload::send(const CrashReport &report)
{
    const std::optional<QUrl> endpoint = WebHosts::webAddress(QString::fromLatin1(endpointPath));
    if (!endpoint)
        return false;
    const QByteArray boundary = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    QNetworkRequest request(*endpoint);
    request.setRawHeader("User-Agent", report.userAgent());
    request.setRawHeader("Content-Type", "multipart/form-data; boundary=" + boundary);
    request.setTransferTimeout(timeoutMs);
    m_reply = m_manager.post(request, report.multipartBody(boundary));
    connect(m_reply, &QNetworkReply::finished, this, [this, reply = m_reply] {
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        reply->deleteLater();
        Q_EMIT finished(status);
    });
    return true;
}
