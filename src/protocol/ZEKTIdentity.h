#pragma once

#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <optional>

class QDir;

// The agent's TLS identity: an ECDSA P-256 key with a self-signed certificate, made at
// first start and reused afterwards. Its fingerprint is the lower-case hex SHA-256 of
// the certificate's DER SubjectPublicKeyInfo, the value consoles pin per host:port.
class ZEKTIdentity {
public:
    ZEKTIdentity() = default;

    // Loads agent-identity.key / agent-identity.crt from `directory`, creating the folder
    // (mode 0700) and both files (key mode 0600) when neither exists. Throws ZEKTError
    // with a readable description when the files are unreadable, damaged or do not match.
    static ZEKTIdentity loadOrCreate(const QString &directory);
    // The identity in `directory`, never creating anything there; none when the folder
    // holds no identity. Throws like loadOrCreate for an incomplete or damaged one.
    static std::optional<ZEKTIdentity> loadExisting(const QString &directory);

    // SPKI fingerprint of any certificate; empty when the certificate cannot be parsed.
    static QString fingerprintOf(const QSslCertificate &certificate);

    static QString keyFileName() { return QStringLiteral("agent-identity.key"); }
    static QString certificateFileName() { return QStringLiteral("agent-identity.crt"); }

    bool isNull() const { return m_certificate.isNull() || m_key.isNull(); }
    QSslCertificate certificate() const { return m_certificate; }
    QSslKey privateKey() const { return m_key; }
    QString fingerprint() const { return m_fingerprint; }

private:
    ZEKTIdentity(QSslCertificate certificate, QSslKey key);
    static std::optional<ZEKTIdentity> readFrom(const QDir &dir);
    static ZEKTIdentity fromPem(const QString &directory, const QByteArray &keyPem,
                                const QByteArray &certPem);

    QSslCertificate m_certificate;
    QSslKey m_key;
    QString m_fingerprint;
};
