#pragma once

#include "ZEKTCredentialVerifier.h"

// Checks the password of the account the agent runs as through PAM (service
// "telvane-agent"). Any other user name is refused after the same delay a failed PAM
// check has, so the answer never tells whether the user exists.
class PamCredentialVerifier : public ZEKTCredentialVerifier {
public:
    PamCredentialVerifier(QString serviceName, QString accountName);

    bool verify(const QString &username, const QString &password) override;

    // Name of the account this process runs as.
    static QString currentAccountName();

private:
    QString m_service;
    QString m_account;
};
