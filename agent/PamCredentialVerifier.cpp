#include "PamCredentialVerifier.h"

#include <security/pam_appl.h>

#include <QThread>

#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <unistd.h>

namespace {

// PAM's own failure delay is about two seconds; a refused name waits as long.
constexpr int kFailureDelayMs = 2000;

struct Conversation {
    QByteArray password;
};

int converse(int count, const pam_message **messages, pam_response **responses, void *data)
{
    if (count <= 0 || count > PAM_MAX_NUM_MSG)
        return PAM_CONV_ERR;
    auto *replies = static_cast<pam_response *>(std::calloc(size_t(count), sizeof(pam_response)));
    if (!replies)
        return PAM_BUF_ERR;
    const auto *conversation = static_cast<const Conversation *>(data);
    for (int i = 0; i < count; ++i) {
        if (messages[i]->msg_style == PAM_PROMPT_ECHO_OFF ||
            messages[i]->msg_style == PAM_PROMPT_ECHO_ON)
            replies[i].resp = strdup(conversation->password.constData());
    }
    *responses = replies;
    return PAM_SUCCESS;
}

} // namespace

PamCredentialVerifier::PamCredentialVerifier(QString serviceName, QString accountName)
    : m_service(std::move(serviceName)), m_account(std::move(accountName))
{
}

QString PamCredentialVerifier::currentAccountName()
{
    if (const passwd *pw = getpwuid(geteuid()))
        return QString::fromLocal8Bit(pw->pw_name);
    return {};
}

bool PamCredentialVerifier::verify(const QString &username, const QString &password)
{
    if (username != m_account || m_account.isEmpty() || password.isEmpty()) {
        QThread::msleep(kFailureDelayMs); // runs on a worker thread of the server
        return false;
    }
    Conversation conversation{password.toUtf8()};
    const pam_conv conv{converse, &conversation};
    pam_handle_t *handle = nullptr;
    const QByteArray service = m_service.toUtf8();
    const QByteArray user = username.toUtf8();
    int result = pam_start(service.constData(), user.constData(), &conv, &handle);
    if (result == PAM_SUCCESS)
        result = pam_authenticate(handle, PAM_SILENT | PAM_DISALLOW_NULL_AUTHTOK);
    if (result == PAM_SUCCESS)
        result = pam_acct_mgmt(handle, PAM_SILENT);
    pam_end(handle, result);
    conversation.password.fill('\0');
    return result == PAM_SUCCESS;
}
