#include "CredentialsFile.h"

#include "posix/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

namespace {
constexpr int kSaltBytes = 16;
constexpr int kHashBytes = 32;
constexpr quint64 kMaxMemory = 256ull * 1024 * 1024;
} // namespace

bool CredentialsFile::isValidUserName(const QString &user)
{
    if (user.isEmpty() || user.size() > 256)
        return false;
    for (const QChar ch : user) {
        if (ch == QLatin1Char(':') || ch.category() == QChar::Other_Control)
            return false;
    }
    return true;
}

std::optional<CredentialsFile::Entry> CredentialsFile::parseLine(const QByteArray &line)
{
    const QList<QByteArray> fields = line.trimmed().split(':');
    if (fields.size() != 7 || fields[1] != "scrypt")
        return std::nullopt;
    Entry entry;
    entry.user = QString::fromUtf8(fields[0]);
    bool okN = false, okR = false, okP = false;
    entry.n = fields[2].toULongLong(&okN);
    entry.r = fields[3].toUInt(&okR);
    entry.p = fields[4].toUInt(&okP);
    const auto salt =
        QByteArray::fromBase64Encoding(fields[5], QByteArray::AbortOnBase64DecodingErrors);
    const auto hash =
        QByteArray::fromBase64Encoding(fields[6], QByteArray::AbortOnBase64DecodingErrors);
    // Bounds keep a tampered file from making each login take minutes or gigabytes.
    if (!isValidUserName(entry.user) || !okN || !okR || !okP || entry.n < 2 ||
        entry.n > (1u << 20) || (entry.n & (entry.n - 1)) != 0 || entry.r < 1 || entry.r > 32 ||
        entry.p < 1 || entry.p > 16 || !salt || !hash || salt.decoded.size() < 8 ||
        hash.decoded.size() != kHashBytes)
        return std::nullopt;
    entry.salt = salt.decoded;
    entry.hash = hash.decoded;
    return entry;
}

QByteArray CredentialsFile::formatLine(const Entry &entry)
{
    return entry.user.toUtf8() + ":scrypt:" + QByteArray::number(entry.n) + ':' +
           QByteArray::number(entry.r) + ':' + QByteArray::number(entry.p) + ':' +
           entry.salt.toBase64() + ':' + entry.hash.toBase64();
}

QByteArray CredentialsFile::derive(const QString &password, const Entry &parameters)
{
    const QByteArray secret = password.toUtf8();
    QByteArray key(kHashBytes, '\0');
    const int ok = EVP_PBE_scrypt(
        secret.constData(), size_t(secret.size()),
        reinterpret_cast<const unsigned char *>(parameters.salt.constData()),
        size_t(parameters.salt.size()), parameters.n, parameters.r, parameters.p, kMaxMemory,
        reinterpret_cast<unsigned char *>(key.data()), size_t(key.size()));
    return ok == 1 ? key : QByteArray();
}

CredentialsFile::Entry CredentialsFile::makeEntry(const QString &user, const QString &password)
{
    Entry entry;
    entry.user = user;
    entry.salt = QByteArray(kSaltBytes, '\0');
    RAND_bytes(reinterpret_cast<unsigned char *>(entry.salt.data()), kSaltBytes);
    entry.hash = derive(password, entry);
    return entry;
}

bool CredentialsFile::matches(const Entry &entry, const QString &password)
{
    const QByteArray key = derive(password, entry);
    return key.size() == entry.hash.size() && !key.isEmpty() &&
           CRYPTO_memcmp(key.constData(), entry.hash.constData(), size_t(key.size())) == 0;
}

std::optional<QList<CredentialsFile::Entry>> CredentialsFile::read(const QString &path,
                                                                   QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("Cannot read the credentials file %1: %2")
                         .arg(path, file.errorString());
        return std::nullopt;
    }
    QList<Entry> entries;
    const QList<QByteArray> lines = file.read(1 << 20).split('\n');
    for (const QByteArray &line : lines) {
        if (auto entry = parseLine(line))
            entries.append(*entry);
    }
    return entries;
}

std::optional<QString> CredentialsFile::setPassword(const QString &path, const QString &user,
                                                    const QString &password)
{
    if (!isValidUserName(user))
        return tr("Invalid user name");
    if (password.isEmpty())
        return tr("The password must not be empty");
    QList<Entry> entries;
    if (QFileInfo::exists(path)) {
        QString error;
        auto existing = read(path, &error);
        if (!existing)
            return error;
        entries = *existing;
    }
    entries.removeIf([&](const Entry &e) { return e.user == user; });
    entries.append(makeEntry(user, password));
    if (entries.last().hash.isEmpty())
        return tr("The password could not be hashed");

    const QString folder = QFileInfo(path).absolutePath();
    if (!PrivateFiles::makeFolder(folder))
        return tr("Cannot create the folder %1").arg(folder);
    QByteArray contents;
    for (const Entry &entry : std::as_const(entries))
        contents += formatLine(entry) + '\n';
    if (const auto error = PrivateFiles::write(path, contents))
        return tr("Cannot write %1: %2").arg(path, *error);
    return std::nullopt;
}
