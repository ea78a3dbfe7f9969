// Tab completion as bash runs it: the completion scripts are sourced into bash, the words
// typed so far are set, and the replies are read back.

#include "../unit/TestFiles.h"
#include "model/ComputerJson.h"
#include "model/UuidText.h"
#include "platform/SettingsFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QtTest>

namespace {

struct Replies {
    QStringList lines;
    QString err;
};

// Runs the completion function of `script` for `words` (the last one being completed).
Replies complete(const QString &script, const QString &function, const QStringList &words)
{
    QProcess bash;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", QFileInfo(TELVANECTL_PATH).absolutePath() + ':' +
                                   QFileInfo(AGENT_PATH).absolutePath() + ':' +
                                   environment.value("PATH"));
    bash.setProcessEnvironment(environment);
    bash.start("bash",
               QStringList{"--norc", "--noprofile", "-c",
                           "source \"$0\"; COMP_WORDS=(\"${@:2}\"); COMP_CWORD=$(($# - 2)); "
                           "\"$1\"; printf '%s\\n' \"${COMPREPLY[@]}\"",
                           script, function} +
                   words);
    if (!bash.waitForFinished(30000) || bash.exitStatus() != QProcess::NormalExit)
        qFatal("bash did not finish");
    Replies replies;
    replies.lines = QString::fromUtf8(bash.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    replies.err = QString::fromUtf8(bash.readAllStandardError());
    return replies;
}

Replies telvanectl(const QStringList &words)
{
    return complete(QStringLiteral(COMPLETION_DIR "/telvanectl"), "_telvanectl",
                    QStringList{"telvanectl"} + words);
}

} // namespace

class CompletionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_alpha.name = QStringLiteral("Alpha Studio");
        m_alpha.host = QStringLiteral("alpha.local");
        m_beta.host = QStringLiteral("beta.local");
    }

    void init()
    {
        QFile::remove(SettingsFiles::sharedSuitePath());
        const auto suite = SettingsFiles::openSharedSuite();
        suite->setValue("remoteComputers", ComputerJson::encodeList({m_alpha, m_beta}));
        suite->sync();
    }

    void seededStore()
    {
        const QString alpha = UuidText::format(m_alpha.id);
        const QString beta = UuidText::format(m_beta.id);
        struct Case {
            QStringList words;
            QStringList replies;
        };
        const QList<Case> cases = {
            {{"up"}, {"upload"}},
            {{"st"}, {"stop-remote-control", "status"}},
            {{"connect", "--computer-name", "al"}, {"Alpha\\ Studio"}},
            {{"connect", "--computer-name", "B"}, {"beta.local"}},
            {{"connect", "--computer-name", ""}, {"Alpha\\ Studio", "beta.local"}},
            {{"status", "--computer", alpha.left(4).toLower()}, {alpha}},
            {{"status", "--computer", ""}, {alpha, beta}},
            {{"connect", "--comp"}, {"--computer", "--computer-name"}},
            {{"upload", "--f"}, {"--file"}},
            {{"connect", "--f"}, {}},
            {{"computers", "--"}, {"--help"}},
        };
        for (const Case &c : cases) {
            const Replies replies = telvanectl(c.words);
            QVERIFY2(replies.err.isEmpty(), qPrintable(replies.err));
            QCOMPARE(replies.lines, c.replies);
        }
    }

    void unusableStoreCompletesNothing_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::newRow("missing") << "missing";
        QTest::newRow("garbage") << "garbage";
        QTest::newRow("not a list") << "not a list";
        QTest::newRow("unreadable") << "unreadable";
    }

    void unusableStoreCompletesNothing()
    {
        QFETCH(QString, damage);
        const QString path = SettingsFiles::sharedSuitePath();
        QFile::remove(path);
        if (damage == "garbage") {
            writeFile(path, QByteArray("[General\n\x01\xff remoteComputers=\"{{{", 32));
        } else if (damage == "not a list") {
            const auto suite = SettingsFiles::openSharedSuite();
            suite->setValue("remoteComputers", QByteArray("{\"not\": \"a list\"}"));
            suite->sync();
        } else if (damage == "unreadable") {
            QVERIFY(QDir().mkpath(path)); // a folder where the file should be
        }
        for (const QStringList &words :
             {QStringList{"connect", "--computer-name", ""}, {"status", "--computer", ""}}) {
            const Replies replies = telvanectl(words);
            QCOMPARE(replies.lines, QStringList());
            QCOMPARE(replies.err, QString());
        }
        if (damage == "unreadable")
            QVERIFY(QDir(path).removeRecursively());
    }

    void agentOptions()
    {
        const QString script = QStringLiteral(COMPLETION_DIR "/telvane-agent");
        QCOMPARE(complete(script, "_telvane_agent", {"telvane-agent", "--au"}).lines,
                 QStringList{"--auth"});
        QCOMPARE(complete(script, "_telvane_agent", {"telvane-agent", "--auth", ""}).lines,
                 (QStringList{"pam", "file"}));
        QCOMPARE(complete(script, "_telvane_agent", {"telvane-agent", "--port", ""}).lines,
                 QStringList());
    }

private:
    RemoteComputer m_alpha;
    RemoteComputer m_beta;
};

QTEST_GUILESS_MAIN(CompletionTest)
#include "CompletionTest.moc"
