#pragma once

#include <QString>

// Checks a username and password for the server side. Called on a worker thread of
// the server (never its I/O thread), so it may block (PAM, a slow hash).
class ZEKTCredentialVerifier {
public:
    virtual ~ZEKTCredentialVerifier() = default;
    virtual bool verify(const QString &username, const QString &password) = 0;
};
