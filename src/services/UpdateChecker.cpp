#include "UpdateChecker.h"

#include "AppVersion.h"
#include "HttpSession.h"
#include "UpdateFeed.h"

#include "platform/WebHosts.h"

#include <QNetworkReply>
#include <QTimer>

UpdateChecker::UpdateChecker(QObject *parent) : QObject(parent) {}

UpdateChecker::~UpdateChecker()
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
}

std::optional<QUrl> UpdateChecker::feedAddress()
{
    return WebHosts::webAddress(QStringLiteral("/updates/telvane.txt"));
}

void UpdateChecker::checkForUpdates(const std::optional<QString> &running)
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
        m_reply = nullptr;
    }
    m_running = running.value_or(AppVersion::running());
    m_body.clear();
    m_bodyTooLarge = false;

    const std::optional<QUrl> address = feedAddress();
    if (!address) {
        finishLater(UpdateCheckOutcome::checkFailed(tr("Invalid update feed URL.")));
        return;
    }
    QNetworkRequest request(*address);
    if (m_transferTimeoutMs > 0)
        request.setTransferTimeout(m_transferTimeoutMs);
    m_reply = HttpSession::shared().manager().get(request);
    connect(m_reply, &QIODevice::readyRead, this, &UpdateChecker::readBody);
    connect(m_reply, &QNetworkReply::finished, this, &UpdateChecker::handleFinished);
}

void UpdateChecker::finishLater(const UpdateCheckOutcome &outcome)
{
    QTimer::singleShot(0, this, [this, outcome] { Q_EMIT finished(outcome); });
}

void UpdateChecker::readBody()
{
    if (!m_reply || m_bodyTooLarge)
        return;
    // Only the answer to a successful request is ever parsed; an error page is not kept.
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (status.isValid() && (status.toInt() < 200 || status.toInt() > 299)) {
        m_reply->skip(m_reply->bytesAvailable());
        return;
    }
    m_body += m_reply->read(UpdateFeed::maximumBodyBytes + 1 - m_body.size());
    if (m_body.size() > UpdateFeed::maximumBodyBytes) {
        m_bodyTooLarge = true;
        m_reply->abort();
    }
}

void UpdateChecker::handleFinished()
{
    QNetworkReply *reply = m_reply;
    m_reply = nullptr;
    if (!reply)
        return;
    if (!m_bodyTooLarge && reply->isOpen())
        m_body += reply->read(UpdateFeed::maximumBodyBytes + 1 - m_body.size());
    const UpdateCheckOutcome outcome = outcomeOf(
        *reply, m_body, m_bodyTooLarge || m_body.size() > UpdateFeed::maximumBodyBytes, m_running);
    reply->deleteLater();
    m_body.clear();
    Q_EMIT finished(outcome);
}

UpdateCheckOutcome UpdateChecker::outcomeOf(QNetworkReply &reply, const QByteArray &body,
                                            bool bodyTooLarge, const QString &running)
{
    // The status decides first: Qt flags 4xx and 5xx as errors too, but the user is told the
    // server's code, and an error page is never read as a feed.
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (status.isValid() && (status.toInt() < 200 || status.toInt() > 299))
        return UpdateCheckOutcome::checkFailed(
            tr("The update server returned an error (code %1).").arg(status.toLongLong()));
    if (bodyTooLarge)
        return UpdateCheckOutcome::checkFailed(UpdateFeed::unreadableMessage());
    if (reply.error() == QNetworkReply::OperationCanceledError)
        // Only the transfer time-out cancels a check; Qt calls that "Operation canceled".
        return UpdateCheckOutcome::checkFailed(tr("The request timed out."));
    if (reply.error() != QNetworkReply::NoError)
        return UpdateCheckOutcome::checkFailed(reply.errorString());
    if (!status.isValid())
        return UpdateCheckOutcome::checkFailed(tr("No response from the update server."));
    return parseUpdateFeed(body, running);
}
