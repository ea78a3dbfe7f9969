// The session manager against the real telvane-agent (simulated host) on 127.0.0.1.
#include "AgentProcess.h"
#include "LogLines.h"
#include "ScriptedAlertPresenter.h"
#include "TestFiles.h"
#include "model/UuidText.h"
#include "platform/AppPaths.h"
#include "platform/NotificationHub.h"
#include "protocol/ZEKT.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString password = QStringLiteral("correct horse");
}

class SessionAgentTest : public QObject {
    Q_OBJECT

private:
    bool startAgent()
    {
        agent = std::make_unique<AgentProcess>(dir.path());
        return agent->start({"--simulate", "--auth", "file", "--credentials-file",
                             dir.filePath("credentials"), "--bind", "127.0.0.1", "--port",
                             port ? QString::number(port) : "0", "--uploads-dir",
                             dir.filePath("uploads"), "--stats-interval", "1"});
    }
    // A new identity on the same port: the console must ask before trusting it.
    bool restartWithNewIdentity()
    {
        agent->terminate();
        for (const QString &name : QDir(dir.filePath("config")).entryList({"agent-identity*"}))
            QFile::remove(dir.filePath("config/" + name));
        return startAgent();
    }
    void makeState()
    {
        state = std::make_unique<AppState>();
        state->zektManager().setAlertPresenter(&presenter);
        computer.name = "Simulated";
        computer.host = "127.0.0.1";
        computer.port = port;
        computer.username = "admin";
        computer.password = password;
        state->addComputer(computer);
    }
    RemoteComputer record() const { return *state->computer(computer.id); }
    ZEKTManager &manager() const { return state->zektManager(); }
    bool settled() const { return !record().isConnecting; }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(AgentProcess::setPassword(dir.filePath("credentials"), "admin", password));
        QVERIFY(QDir().mkpath(dir.filePath("uploads")));
        QVERIFY(startAgent());
        port = agent->port();
        makeState();
    }
    void cleanup() { ZEKT::resetTimeoutsForTesting(); }
    void cleanupTestCase()
    {
        state->waitForPendingWrites();
        state.reset();
        agent.reset();
    }

    void sessionRoundTrip()
    {
        manager().connectToComputer(computer);
        QTRY_VERIFY_WITH_TIMEOUT(record().isConnected, 20000);
        QTRY_VERIFY_WITH_TIMEOUT(record().systemStats.has_value(), 10000);
        QVERIFY(record().systemStats->cpuUsage.has_value());

        manager().requestManualPreview(computer);
        QTRY_VERIFY_WITH_TIMEOUT(record().thumbnailImage.has_value(), 10000);
        QCOMPARE(QImage::fromData(*record().thumbnailImage).width(), 640);
        state->waitForPendingWrites();
        QVERIFY(QFile::exists(QDir(AppPaths::thumbnailsDirectory())
                                  .filePath(UuidText::format(computer.id) + ".jpg")));

        QSignalSpy frames(&NotificationHub::shared(), &NotificationHub::notificationPosted);
        manager().startRemoteControlStreaming(computer, 10);
        QTest::qWait(3000);
        manager().stopRemoteControlStreaming(computer);
        QVERIFY2(frames.size() >= 5, qPrintable(QString::number(frames.size())));
        QCOMPARE(frames.first().at(1).toMap().value("computerID").toUuid(), computer.id);

        const QString five = writeFile(dir.filePath("five.bin"), QByteArray(5 * 1024 * 1024, 'z'));
        QStringList statuses;
        connect(state.get(), &AppState::fileTransferChanged, this, [&] {
            if (statuses.value(statuses.size() - 1) != state->fileTransferStatus())
                statuses << state->fileTransferStatus();
        });
        manager().sendFileTransfer(computer, five, std::nullopt, false);
        QTRY_VERIFY_WITH_TIMEOUT(statuses.size() >= 2 && !state->isFileTransferInProgress(), 30000);
        QVERIFY2(statuses.indexOf("Sending file...") >= 0, qPrintable(statuses.join('|')));
        QVERIFY(statuses.indexOf("Sending file...") <
                statuses.indexOf("Waiting for server confirmation..."));
        QVERIFY2(statuses.last().startsWith("File received"), qPrintable(statuses.last()));
        QCOMPARE(QFileInfo(dir.filePath("uploads/five.bin")).size(), 5 * 1024 * 1024);

        manager().disconnectFromComputer(computer);
        QVERIFY(!record().isConnected);
        QVERIFY(manager().clients().isEmpty());
    }

    void wrongPasswordKeepsTheAgentsReason()
    {
        RemoteComputer wrong = record();
        wrong.password = "nope";
        manager().connectToComputer(wrong);
        QTRY_VERIFY_WITH_TIMEOUT(settled() && record().lastError.has_value(), 20000);
        QCOMPARE(*record().lastError, QStringLiteral("Invalid username or password"));
        QVERIFY(!record().isConnected);
    }

    void changedIdentityAsksTheUser()
    {
        // Trust: the session goes on.
        QVERIFY(restartWithNewIdentity());
        presenter.script = {0};
        manager().connectToComputer(computer);
        QTRY_VERIFY_WITH_TIMEOUT(record().isConnected, 20000);
        QCOMPARE(presenter.shown.size(), 1);
        QCOMPARE(presenter.shown.last().title, QStringLiteral("Server Identity Changed"));
        manager().disconnectFromComputer(computer);

        // Reject, then no answer at all: the attempt fails either way.
        ZEKT::setTimeoutsForTesting({10.0, 5.0, 1.0});
        for (const QList<int> &script : {QList<int>{1}, QList<int>{}}) {
            QVERIFY(restartWithNewIdentity());
            presenter.script = script;
            const int aborted = presenter.aborted;
            state->updateConnectionStatus(computer.id, false, QString());
            manager().connectToComputer(computer);
            QTRY_VERIFY_WITH_TIMEOUT(settled() && !record().lastError.value_or("").isEmpty(),
                                     20000);
            QVERIFY(!record().isConnected);
            QCOMPARE(presenter.aborted, aborted + (script.isEmpty() ? 1 : 0));
        }
        QCOMPARE(presenter.shown.size(), 3);
    }

private:
    QTemporaryDir dir;
    std::unique_ptr<AgentProcess> agent;
    quint16 port = 0;
    ScriptedAlertPresenter presenter;
    std::unique_ptr<AppState> state;
    RemoteComputer computer;
};

QTEST_MAIN(SessionAgentTest)
#include "SessionAgentTest.moc"
