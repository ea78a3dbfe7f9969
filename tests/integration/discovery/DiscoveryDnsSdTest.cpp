// Discovery against a real Avahi daemon, inside the private network of dnssd-namespace.sh.
#include "AgentProcess.h"
#include "DnsSdTestPublisher.h"
#include "LogLines.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "discovery/avahi/AvahiDiscoveryBackend.h"
#include "discovery/forms/AddComputerView.h"
#include "discovery/forms/DiscoveredServerListModel.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString ownHost = qEnvironmentVariable("TELVANE_DNSSD_HOST");

std::optional<DiscoveredServer> serverOn(const BonjourDiscoveryManager &manager, quint16 port)
{
    for (const DiscoveredServer &server : manager.discoveredServers()) {
        if (server.port() == port)
            return server;
    }
    return std::nullopt;
}

int rowsOn(const BonjourDiscoveryManager &manager, quint16 port)
{
    return int(std::count_if(manager.discoveredServers().begin(), manager.discoveredServers().end(),
                             [port](const DiscoveredServer &s) { return s.port() == port; }));
}

bool runDaemonCommand(const QStringList &command)
{
    return QProcess::execute(command.first(), command.mid(1)) == 0;
}

} // namespace

class DiscoveryDnsSdTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (ownHost.isEmpty())
            QSKIP("runs only inside tests/integration/dnssd-namespace.sh");
        QFile::remove(SettingsFiles::sharedSuitePath());
    }

    void rowsFollowTheAnnouncements()
    {
        DnsSdTestPublisher publisher;
        QVERIFY(publisher.isConnected());
        // No address record for its host: it never resolves, so it never shows.
        QVERIFY(publisher.publish("Ghost", 29150, {"name=Ghost"}, "ghost.local") >= 0);
        QDeadlineTimer ghostGone(5500);
        QVERIFY(publisher.publish("Alpha", 29101, {"name=Alpha"}) >= 0);
        QVERIFY(publisher.publish("Same", 29102, {"name=box", "hostname=box"}) >= 0);
        const int bare = publisher.publish("Bare", 29103);
        QVERIFY(bare >= 0);
        QVERIFY(publisher.publish("Mixed", 29104, {"name=\xC3\x28", "hostname=mixed-host"}) >= 0);
        QVERIFY(publisher.publish("Twice", 29105, {"name=first", "NAME=second"}) >= 0);

        BonjourDiscoveryManager manager(std::make_unique<AvahiDiscoveryBackend>());
        manager.startDiscovery();
        QTRY_COMPARE_WITH_TIMEOUT(manager.discoveredServers().size(), 5, 10000);
        QCOMPARE(serverOn(manager, 29101)->host(), ownHost);
        QCOMPARE(serverOn(manager, 29101)->displayText(), "Alpha (" + ownHost + ")");
        QCOMPARE(serverOn(manager, 29102)->displayText(), QStringLiteral("box"));
        QCOMPARE(serverOn(manager, 29103)->displayText(), "Bare (" + ownHost + ")");
        QVERIFY(!serverOn(manager, 29104)->computerName());
        QCOMPARE(serverOn(manager, 29104)->displayText(), QStringLiteral("mixed-host"));
        QCOMPARE(serverOn(manager, 29105)->computerName(), QStringLiteral("first"));

        // A second name on the first one's host and port: one row, the later one.
        QVERIFY(publisher.publish("Alpha Two", 29101, {"name=Alpha Two"}) >= 0);
        QTRY_COMPARE_WITH_TIMEOUT(serverOn(manager, 29101)->name(), QStringLiteral("Alpha Two"),
                                  10000);
        QCOMPARE(rowsOn(manager, 29101), 1);
        QCOMPARE(manager.discoveredServers().constLast().name(), QStringLiteral("Alpha Two"));

        publisher.withdraw(bare);
        QTRY_VERIFY_WITH_TIMEOUT(!serverOn(manager, 29103), 10000);

        QTest::qWait(int(ghostGone.remainingTime()));
        QVERIFY(!serverOn(manager, 29150));
        QCOMPARE(manager.discoveredServers().size(), 4);
        QVERIFY(manager.isDiscovering());
        manager.stopDiscovery();
        QTRY_VERIFY(!manager.isDiscovering());
    }

    void aDaemonThatGoesOrIsMissingEndsTheBrowse()
    {
        LogLines::clear();
        DnsSdTestPublisher publisher;
        QVERIFY(publisher.publish("Lonely", 29110) >= 0);
        BonjourDiscoveryManager manager(std::make_unique<AvahiDiscoveryBackend>());
        manager.startDiscovery();
        QTRY_VERIFY_WITH_TIMEOUT(serverOn(manager, 29110), 10000);

        QVERIFY(runDaemonCommand({"avahi-daemon", "-k"}));
        QTRY_VERIFY_WITH_TIMEOUT(!manager.isDiscovering(), 10000);
        QVERIFY(serverOn(manager, 29110)); // the list stays
        QCOMPARE(
            LogLines::count("WARN", "Local network search stopped: the Avahi daemon went away"), 1);

        // No daemon at all: the browse cannot start, and the log says why.
        QTest::qWait(200); // the daemon's pid file goes last
        manager.startDiscovery();
        QTRY_VERIFY_WITH_TIMEOUT(!manager.isDiscovering(), 10000);
        QCOMPARE(LogLines::count("WARN", "Local network search could not start: no Avahi daemon "
                                         "is running (or no system bus)"),
                 1);

        // The daemon is back: the next start makes a new client.
        QVERIFY(runDaemonCommand({qEnvironmentVariable("TELVANE_AVAHI_START")}));
        DnsSdTestPublisher again;
        QVERIFY(again.publish("Back", 29111) >= 0);
        manager.startDiscovery();
        QTRY_VERIFY_WITH_TIMEOUT(serverOn(manager, 29111), 10000);
        QVERIFY(manager.isDiscovering());
    }

    void anAgentIsFoundPickedAddedAndConnectedByItsLocalName()
    {
        QTemporaryDir dir;
        QVERIFY(AgentProcess::setPassword(dir.filePath("credentials"), "admin", "secret"));
        AgentProcess agent(dir.path());
        QVERIFY(agent.start({"--simulate", "--auth", "file", "--credentials-file",
                             dir.filePath("credentials"), "--bind", "198.18.0.1", "--port", "29120",
                             "--uploads-dir", dir.path()}));

        AppState state;
        BonjourDiscoveryManager discovery(std::make_unique<AvahiDiscoveryBackend>());
        AddComputerView form(state, discovery);
        form.appear();
        QTRY_VERIFY_WITH_TIMEOUT(serverOn(discovery, 29120), 15000);
        const DiscoveredServer found = *serverOn(discovery, 29120);
        QVERIFY(found.version() && found.hostname());
        form.selectServer(found.id());
        form.setUsername("admin");
        form.setPassword("secret");
        QCOMPARE(form.addNow(), AddComputerView::AddOutcome::added);

        const RemoteComputer added = state.computers().constLast();
        QCOMPARE(added.connectionString(), ownHost + ":29120");
        state.zektManager().connectToComputer(added);
        QTRY_VERIFY_WITH_TIMEOUT(state.computer(added.id)->isConnected, 20000);
        state.zektManager().disconnectFromComputer(added);
        state.waitForPendingWrites();
    }
};

QTEST_GUILESS_MAIN(DiscoveryDnsSdTest)
#include "DiscoveryDnsSdTest.moc"
