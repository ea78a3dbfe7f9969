#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <optional>

// The credentials file of the file authentication backend: one line per user,
// "name:scrypt:N:r:p:salt:hash" (salt and hash in Base64), mode 0600.
class CredentialsFile {
    Q_DECLARE_TR_FUNCTIONS(CredentialsFile)

public:
    struct Entry {
        QString user;
        quint64 n = 16384; // scrypt cost: about 16 MiB and tens of milliseconds per check
        quint32 r = 8;
        quint32 p = 1;
        QByteArray salt;
        QByteArray hash;
    };

    static bool isValidUserName(const QString &user);
    static std::optional<Entry> parseLine(const QByteArray &line);
    static QByteArray formatLine(const Entry &entry);
    // A new entry with a random salt.
    static Entry makeEntry(const QString &user, const QString &password);
    // Constant-time comparison of the derived key.
    static bool matches(const Entry &entry, const QString &password);

    // Entries of the file; none with `error` set when it cannot be read. Damaged lines
    // are skipped.
    static std::optional<QList<Entry>> read(const QString &path, QString *error);
    // Adds or replaces the user's line, writing the file atomically with mode 0600.
    static std::optional<QString> setPassword(const QString &path, const QString &user,
                                              const QString &password);

private:
    static QByteArray derive(const QString &password, const Entry &parameters);
};
