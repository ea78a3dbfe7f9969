#include "CredentialsFile.h"
#include "FileCredentialVerifier.h"
#include "PamCredentialVerifier.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

TEST(CredentialsFile, SetPasswordAndVerify)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/cfg/credentials";
    ASSERT_FALSE(CredentialsFile::setPassword(path, "alice", "correct horse"));
    ASSERT_FALSE(CredentialsFile::setPassword(path, "bob", "other"));
    ASSERT_FALSE(CredentialsFile::setPassword(path, "alice", "new secret")); // replaces
    struct stat st {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    EXPECT_TRUE(CredentialsFile::setPassword(path, "a:b", "x").has_value());
    EXPECT_TRUE(CredentialsFile::setPassword(path, "carol", "").has_value());

    QStringList log;
    FileCredentialVerifier verifier(path, [&](const QString &l) { log << l; });
    EXPECT_TRUE(verifier.verify("alice", "new secret"));
    EXPECT_FALSE(verifier.verify("alice", "correct horse"));
    EXPECT_TRUE(verifier.verify("bob", "other"));
    EXPECT_FALSE(verifier.verify("bob", "Other"));
    EXPECT_FALSE(verifier.verify("mallory", "other"));
    EXPECT_TRUE(log.isEmpty());

    // A remembered login never outlives a password change, nor vouches for another one.
    EXPECT_TRUE(verifier.verify("bob", "other"));
    EXPECT_FALSE(verifier.verify("bob", "other2"));
    ASSERT_FALSE(CredentialsFile::setPassword(path, "bob", "changed"));
    EXPECT_FALSE(verifier.verify("bob", "other"));
    EXPECT_TRUE(verifier.verify("bob", "changed"));

    FileCredentialVerifier missing(dir.path() + "/none", [&](const QString &l) { log << l; });
    EXPECT_FALSE(missing.verify("alice", "new secret"));
    EXPECT_EQ(log.size(), 1);
}

TEST(CredentialsFile, DamagedOrHostileLinesAreSkipped)
{
    const auto entry = CredentialsFile::makeEntry("alice", "pw");
    const QByteArray line = CredentialsFile::formatLine(entry);
    const auto parsed = CredentialsFile::parseLine(line);
    ASSERT_TRUE(parsed);
    EXPECT_NE(entry.salt, CredentialsFile::makeEntry("alice", "pw").salt); // salted
    EXPECT_TRUE(CredentialsFile::matches(*parsed, "pw"));

    QList<QByteArray> fields = line.split(':');
    auto with = [&](int index, const QByteArray &value) {
        QList<QByteArray> copy = fields;
        copy[index] = value;
        return copy.join(':');
    };
    EXPECT_FALSE(CredentialsFile::parseLine(with(1, "md5")));
    EXPECT_FALSE(CredentialsFile::parseLine(with(2, "1073741824"))); // cost out of bounds
    EXPECT_FALSE(CredentialsFile::parseLine(with(2, "1000")));       // not a power of two
    EXPECT_FALSE(CredentialsFile::parseLine(with(5, "!!!")));
    EXPECT_FALSE(CredentialsFile::parseLine(with(6, "YWJj")));
    EXPECT_FALSE(CredentialsFile::parseLine("alice:scrypt:16384"));
    EXPECT_FALSE(CredentialsFile::parseLine(""));
}

TEST(PamCredentialVerifier, OtherAccountsAreRefusedWithoutAskingPam)
{
    PamCredentialVerifier verifier("telvane-agent-test",
                                   PamCredentialVerifier::currentAccountName());
    EXPECT_FALSE(PamCredentialVerifier::currentAccountName().isEmpty());
    EXPECT_FALSE(verifier.verify("no-such-user-telvane", "x"));
    EXPECT_FALSE(verifier.verify(PamCredentialVerifier::currentAccountName(), ""));
}
