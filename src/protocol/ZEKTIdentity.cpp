#include "ZEKTIdentity.h"

#include "ZEKTError.h"
#include "posix/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509.h>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <unistd.h>

namespace {

struct OpenSslFree {
    void operator()(EVP_PKEY *p) const { EVP_PKEY_free(p); }
    void operator()(X509 *p) const { X509_free(p); }
    void operator()(BIO *p) const { BIO_free(p); }
};
template <typename T> using Owned = std::unique_ptr<T, OpenSslFree>;

QByteArray bioContents(BIO *bio)
{
    char *data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    return QByteArray(data, static_cast<qsizetype>(size));
}

// Both files are the user's alone, the key never readable by others even for a moment.
void writeIdentityFile(const QString &path, const QByteArray &contents)
{
    if (const auto error = PrivateFiles::write(path, contents))
        throw ZEKTError(QStringLiteral("Cannot write %1: %2").arg(path, *error));
}

std::pair<QByteArray, QByteArray> generatePem()
{
    Owned<EVP_PKEY> key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    Owned<X509> cert(X509_new());
    if (!key || !cert)
        throw ZEKTError(QStringLiteral("Cannot generate the agent identity key"));

    X509_set_version(cert.get(), 2);
    unsigned char serial[16];
    RAND_bytes(serial, sizeof serial);
    serial[0] &= 0x7f;
    BIGNUM *bn = BN_bin2bn(serial, sizeof serial, nullptr);
    BN_to_ASN1_INTEGER(bn, X509_get_serialNumber(cert.get()));
    BN_free(bn);
    X509_gmtime_adj(X509_getm_notBefore(cert.get()), -24 * 3600);
    X509_gmtime_adj(X509_getm_notAfter(cert.get()), 20L * 365 * 24 * 3600);
    X509_set_pubkey(cert.get(), key.get());
    X509_NAME *name = X509_get_subject_name(cert.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char *>("Telvane Agent"), -1, -1, 0);
    X509_set_issuer_name(cert.get(), name);
    if (X509_sign(cert.get(), key.get(), EVP_sha256()) == 0)
        throw ZEKTError(QStringLiteral("Cannot sign the agent identity certificate"));

    Owned<BIO> keyBio(BIO_new(BIO_s_mem()));
    Owned<BIO> certBio(BIO_new(BIO_s_mem()));
    if (!PEM_write_bio_PrivateKey(keyBio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) ||
        !PEM_write_bio_X509(certBio.get(), cert.get()))
        throw ZEKTError(QStringLiteral("Cannot encode the agent identity"));
    return {bioContents(keyBio.get()), bioContents(certBio.get())};
}

bool keyMatchesCertificate(const QByteArray &keyPem, const QByteArray &certPem)
{
    Owned<BIO> keyBio(BIO_new_mem_buf(keyPem.constData(), static_cast<int>(keyPem.size())));
    Owned<BIO> certBio(BIO_new_mem_buf(certPem.constData(), static_cast<int>(certPem.size())));
    Owned<EVP_PKEY> key(PEM_read_bio_PrivateKey(keyBio.get(), nullptr, nullptr, nullptr));
    Owned<X509> cert(PEM_read_bio_X509(certBio.get(), nullptr, nullptr, nullptr));
    return key && cert && X509_check_private_key(cert.get(), key.get()) == 1;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ZEKTError(QStringLiteral("Cannot read %1: %2").arg(path, file.errorString()));
    return file.read(1024 * 1024);
}

} // namespace

ZEKTIdentity::ZEKTIdentity(QSslCertificate certificate, QSslKey key)
    : m_certificate(std::move(certificate)), m_key(std::move(key)),
      m_fingerprint(fingerprintOf(m_certificate))
{
}

namespace {

// Held while an identity is made or read, so agents started together (a service and
// `--fingerprint`, say) never see half of one. Closing the descriptor releases the lock.
class IdentityLock {
public:
    // `create`: make the lock file when missing (only a maker of identities does that).
    IdentityLock(const QDir &dir, bool create)
        : m_fd(::open(QFile::encodeName(dir.filePath(QStringLiteral("identity.lock"))).constData(),
                      (create ? O_RDWR | O_CREAT : O_RDONLY) | O_CLOEXEC, 0600))
    {
        // Best effort: a read-only folder that already holds an identity needs no lock.
        while (m_fd >= 0 && ::flock(m_fd, create ? LOCK_EX : LOCK_SH) != 0 && errno == EINTR) {
        }
    }
    ~IdentityLock()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    IdentityLock(const IdentityLock &) = delete;
    IdentityLock &operator=(const IdentityLock &) = delete;

private:
    int m_fd;
};

} // namespace

ZEKTIdentity ZEKTIdentity::loadOrCreate(const QString &directory)
{
    // The folder holding the key is the agent's own: 0700, and narrowed when it is wider.
    QDir dir(directory);
    if (!PrivateFiles::makeFolder(directory, directory))
        throw ZEKTError(QStringLiteral("Cannot create the identity folder %1").arg(directory));

    // The first of several agents started together creates it; the others then read it.
    const IdentityLock lock(dir, true);
    const QString keyPath = dir.filePath(keyFileName());
    const QString certPath = dir.filePath(certificateFileName());
    if (!QFileInfo::exists(keyPath) && !QFileInfo::exists(certPath)) {
        const auto [keyPem, certPem] = generatePem();
        writeIdentityFile(keyPath, keyPem);
        writeIdentityFile(certPath, certPem);
        return fromPem(directory, keyPem, certPem);
    }
    // Files that became readable by others are narrowed again.
    PrivateFiles::restrictFile(keyPath);
    PrivateFiles::restrictFile(certPath);
    return *readFrom(dir);
}

std::optional<ZEKTIdentity> ZEKTIdentity::loadExisting(const QString &directory)
{
    const QDir dir(directory);
    if (!dir.exists())
        return std::nullopt;
    const IdentityLock lock(dir, false);
    return readFrom(dir);
}

std::optional<ZEKTIdentity> ZEKTIdentity::readFrom(const QDir &dir)
{
    const QString keyPath = dir.filePath(keyFileName());
    const QString certPath = dir.filePath(certificateFileName());
    const bool haveKey = QFileInfo::exists(keyPath);
    const bool haveCert = QFileInfo::exists(certPath);
    if (!haveKey && !haveCert)
        return std::nullopt;
    if (haveKey != haveCert)
        throw ZEKTError(QStringLiteral("The agent identity in %1 is incomplete (%2 is missing); "
                                       "remove the other file to create a new identity")
                            .arg(dir.path(), haveKey ? certificateFileName() : keyFileName()));
    return fromPem(dir.path(), readFile(keyPath), readFile(certPath));
}

ZEKTIdentity ZEKTIdentity::fromPem(const QString &directory, const QByteArray &keyPem,
                                   const QByteArray &certPem)
{
    if (!keyMatchesCertificate(keyPem, certPem))
        throw ZEKTError(QStringLiteral("The agent identity in %1 is damaged or its key does not "
                                       "match its certificate")
                            .arg(directory));
    QSslKey key(keyPem, QSsl::Ec, QSsl::Pem, QSsl::PrivateKey);
    QSslCertificate cert(certPem, QSsl::Pem);
    if (key.isNull() || cert.isNull())
        throw ZEKTError(QStringLiteral("The agent identity in %1 cannot be loaded").arg(directory));
    return ZEKTIdentity(cert, key);
}

QString ZEKTIdentity::fingerprintOf(const QSslCertificate &certificate)
{
    const QByteArray der = certificate.toDer();
    if (der.isEmpty())
        return {};
    const auto *p = reinterpret_cast<const unsigned char *>(der.constData());
    Owned<X509> cert(d2i_X509(nullptr, &p, static_cast<long>(der.size())));
    if (!cert)
        return {};
    unsigned char *spki = nullptr;
    const int length = i2d_X509_PUBKEY(X509_get_X509_PUBKEY(cert.get()), &spki);
    if (length <= 0)
        return {};
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int digestLength = 0;
    const bool ok = EVP_Digest(spki, static_cast<size_t>(length), digest, &digestLength,
                               EVP_sha256(), nullptr) == 1;
    OPENSSL_free(spki);
    if (!ok)
        return {};
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(digest), digestLength).toHex());
}
