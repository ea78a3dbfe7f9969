#include "LogLines.h"
#include "ScriptedDiscoveryBackend.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "discovery/ServiceTxtRecord.h"

#include <QSignalSpy>
#include <QTest>

using Text = std::optional<QString>;
Q_DECLARE_METATYPE(Text)

namespace {

QString describe(const Text &text)
{
    return text ? QLatin1Char('"') + *text + QLatin1Char('"') : QStringLiteral("absent");
}

QStringList rows(const BonjourDiscoveryManager &manager)
{
    QStringList out;
    for (const DiscoveredServer &server : manager.discoveredServers())
        out << server.name() + QLatin1Char('@') + server.address();
    return out;
}

void settle()
{
    QCoreApplication::processEvents();
}

} // namespace

class DiscoveryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void displayText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Text>("computerName");
        QTest::addColumn<Text>("hostname");
        QTest::addColumn<QString>("expected");
        const Text none;
        QTest::newRow("host name and computer name")
            << "Agent" << Text("Studio") << Text("studio-pc") << "studio-pc - Studio";
        QTest::newRow("computer name equal to host name")
            << "Agent" << Text("studio-pc") << Text("studio-pc") << "studio-pc";
        QTest::newRow("empty computer name")
            << "Agent" << Text("") << Text("studio-pc") << "studio-pc";
        QTest::newRow("no host name") << "Agent" << Text("Studio") << none << "Studio (vm.local)";
        QTest::newRow("empty host name, no computer name")
            << "Agent" << none << Text("") << "Agent (vm.local)";
        QTest::newRow("no TXT") << "Agent" << none << none << "Agent (vm.local)";
    }

    void displayText()
    {
        QFETCH(QString, name);
        QFETCH(Text, computerName);
        QFETCH(Text, hostname);
        const DiscoveredServer server(name, QStringLiteral("vm.local"), 5905, computerName,
                                      hostname);
        QTEST(server.displayText(), "expected");
        // Equal by host and port only.
        QVERIFY(server ==
                DiscoveredServer(QStringLiteral("Other"), QStringLiteral("vm.local"), 5905));
        QVERIFY(!(server == DiscoveredServer(name, QStringLiteral("vm.local"), 5906)));
    }

    void txtRecord_data()
    {
        QTest::addColumn<QList<QByteArray>>("items");
        QTest::addColumn<Text>("name");
        QTest::addColumn<Text>("hostname");
        QTest::addColumn<Text>("version");
        using Items = QList<QByteArray>;
        const Text none;
        QTest::newRow("all three") << Items{"name=Studio", "hostname=studio", "version=0.1.0"}
                                   << Text("Studio") << Text("studio") << Text("0.1.0");
        QTest::newRow("no TXT") << Items{} << none << none << none;
        QTest::newRow("keys ignore case")
            << Items{"NAME=A", "HostName=b"} << Text("A") << Text("b") << none;
        QTest::newRow("first occurrence wins")
            << Items{"name=first", "name=second"} << Text("first") << none << none;
        QTest::newRow("a bad first occurrence still wins")
            << Items{"name=\xC3", "name=good"} << none << none << none;
        QTest::newRow("key without =") << Items{"name", "name=later"} << none << none << none;
        QTest::newRow("empty value") << Items{"name="} << Text("") << none << none;
        QTest::newRow("= inside the value") << Items{"name=a=b"} << Text("a=b") << none << none;
        QTest::newRow("over-long key")
            << Items{"namename=x", "hostnames=y"} << none << none << none;
        QTest::newRow("empty and keyless items")
            << Items{"", "=x", "version=2"} << none << none << Text("2");
        QTest::newRow("UTF-8") << Items{"name=\xC3\x89rable \xF0\x9F\x96\xA5"}
                               << Text(QStringLiteral(u"Érable 🖥")) << none << none;
        QTest::newRow("BOM kept") << Items{"name=\xEF\xBB\xBFx"} << Text(QStringLiteral(u"\uFEFFx"))
                                  << none << none;
        QTest::newRow("NUL byte kept") << Items{QByteArray("name=a\0b", 8)}
                                       << Text(QString::fromUtf8("a\0b", 3)) << none << none;
        // Only the bad key goes.
        QTest::newRow("cut-off sequence")
            << Items{"name=abc\xC3", "hostname=ok"} << none << Text("ok") << none;
        QTest::newRow("overlong form")
            << Items{"name=\xC0\xAF", "hostname=ok"} << none << Text("ok") << none;
        QTest::newRow("surrogate")
            << Items{"name=\xED\xA0\x80", "version=1"} << none << none << Text("1");
        QTest::newRow("Latin-1") << Items{"hostname=caf\xE9"} << none << none << none;
        QTest::newRow("beyond U+10FFFF")
            << Items{"version=\xF4\x90\x80\x80"} << none << none << none;
    }

    void txtRecord()
    {
        QFETCH(QList<QByteArray>, items);
        QFETCH(Text, name);
        QFETCH(Text, hostname);
        QFETCH(Text, version);
        const ServiceTxtRecord record = ServiceTxtRecord::read(items);
        QCOMPARE(describe(record.name), describe(name));
        QCOMPARE(describe(record.hostname), describe(hostname));
        QCOMPARE(describe(record.version), describe(version));
    }

    void oneRowPerHostAndPortInResolutionOrder()
    {
        auto backend = std::make_unique<ScriptedDiscoveryBackend>();
        ScriptedDiscoveryBackend &b = *backend;
        BonjourDiscoveryManager manager(std::move(backend));
        manager.startDiscovery();
        for (const char *name : {"Alpha", "Beta", "Gamma"})
            b.found(QLatin1String(name));
        b.found(QStringLiteral("Alpha"), 3, 1); // the same service on another interface, IPv6
        settle();
        QCOMPARE(b.calls,
                 (QStringList{"browse 1", "resolve Alpha", "resolve Beta", "resolve Gamma"}));

        b.resolved(QStringLiteral("Alpha"), QStringLiteral("a.local"), 5905);
        b.resolved(QStringLiteral("Gamma"), QStringLiteral("g.local"), 5905);
        b.resolved(QStringLiteral("Beta"), QStringLiteral("a.local"),
                   5905); // Alpha's host and port
        settle();
        QCOMPARE(rows(manager), (QStringList{"Gamma@g.local:5905", "Beta@a.local:5905"}));

        // Withdrawn: a copy at a time; the row goes with the last one.
        b.removed(QStringLiteral("Gamma"), 2, 0);
        settle();
        QCOMPARE(rows(manager), QStringList{"Beta@a.local:5905"});
        // Alpha, resolved to the same host and port as Beta, goes with its last copy, and
        // with it every row of that host and port.
        b.removed(QStringLiteral("Alpha"), 2, 0);
        settle();
        QCOMPARE(rows(manager), QStringList{"Beta@a.local:5905"});
        b.removed(QStringLiteral("Alpha"), 3, 1);
        settle();
        QVERIFY(manager.discoveredServers().isEmpty());
        b.removed(QStringLiteral("Beta"));
        settle();
        QVERIFY(manager.discoveredServers().isEmpty());

        // Seen again after it went: resolved again, at the end, with a new id.
        b.found(QStringLiteral("Gamma"));
        b.found(QStringLiteral("Delta"));
        settle();
        b.resolved(QStringLiteral("Delta"), QStringLiteral("d.local"), 1);
        b.resolved(QStringLiteral("Gamma"), QStringLiteral("g.local"), 5905);
        settle();
        QCOMPARE(rows(manager), (QStringList{"Delta@d.local:1", "Gamma@g.local:5905"}));
    }

    void resolutionEdgeCases()
    {
        auto backend = std::make_unique<ScriptedDiscoveryBackend>();
        ScriptedDiscoveryBackend &b = *backend;
        BonjourDiscoveryManager manager(std::move(backend));
        manager.startDiscovery();
        for (const char *name : {"NoHost", "BadPort", "Fails", "Moves"})
            b.found(QLatin1String(name));
        b.found(QStringLiteral("Moves"), 3, 0);
        settle();
        b.resolved(QStringLiteral("NoHost"), QString(), 5905);
        b.resolved(QStringLiteral("BadPort"), QStringLiteral("b.local"), 70000);
        b.failed(QStringLiteral("Fails"));
        // The copy being resolved goes: resolved through the other, not reported as gone.
        b.removed(QStringLiteral("Moves"), 2, 0);
        settle();
        QCOMPARE(b.calls.mid(5), (QStringList{"cancel Moves", "resolve Moves"}));
        QCOMPARE(b.resolving.value(b.resolutionOf(QStringLiteral("Moves"))).interfaceIndex, 3);
        b.resolved(QStringLiteral("Moves"), QStringLiteral("m.local"), 5905);
        // Each name is resolved once: more copies of a resolved or failed one change nothing.
        b.found(QStringLiteral("Fails"), 4, 0);
        b.found(QStringLiteral("Moves"), 4, 0);
        settle();
        QCOMPARE(rows(manager), QStringList{"Moves@m.local:5905"});
        QCOMPARE(b.calls.size(), 7);
    }

    void atMost32ResolutionsAtATime()
    {
        auto backend = std::make_unique<ScriptedDiscoveryBackend>();
        ScriptedDiscoveryBackend &b = *backend;
        BonjourDiscoveryManager manager(std::move(backend));
        manager.startDiscovery();
        for (int i = 0; i < 40; ++i)
            b.found(QStringLiteral("S%1").arg(i));
        settle();
        QCOMPARE(b.resolving.size(), BonjourDiscoveryManager::maxResolutionsInFlight);
        // A queued one that goes is never resolved; a finished one frees a place.
        b.removed(QStringLiteral("S32"));
        b.resolved(QStringLiteral("S0"), QStringLiteral("h.local"), 1);
        settle();
        QCOMPARE(b.resolving.size(), 32);
        QVERIFY(!b.calls.contains("resolve S32"));
        QVERIFY(b.calls.contains("resolve S33"));
        // Stopping drops the rest of the queue.
        manager.stopDiscovery();
        for (int i = 1; i < 34; ++i)
            b.resolved(QStringLiteral("S%1").arg(i), QStringLiteral("h%1.local").arg(i), 1);
        settle();
        QVERIFY(!b.calls.contains("resolve S34"));
        QCOMPARE(rows(manager), QStringList{"S0@h.local:1"});
    }

    void flagsAndListChangeQueuedOrAtOnce()
    {
        auto backend = std::make_unique<ScriptedDiscoveryBackend>();
        ScriptedDiscoveryBackend &b = *backend;
        BonjourDiscoveryManager manager(std::move(backend));
        QSignalSpy flag(&manager, &BonjourDiscoveryManager::isDiscoveringChanged);
        manager.stopDiscovery(); // idle: nothing
        QVERIFY(b.calls.isEmpty());

        manager.startDiscovery();
        manager.startDiscovery();         // one browse
        QVERIFY(manager.isDiscovering()); // at once
        b.found(QStringLiteral("A"));
        settle();
        b.resolved(QStringLiteral("A"), QStringLiteral("a.local"), 5905);
        settle();
        QCOMPARE(manager.discoveredServers().size(), 1);

        manager.stopDiscovery();
        QVERIFY(manager.isDiscovering()); // through the queue
        manager.startDiscovery();         // same turn as the stop: ignored
        settle();
        QVERIFY(!manager.isDiscovering());
        QCOMPARE(manager.discoveredServers().size(), 1); // kept
        QCOMPARE(flag.size(), 2);

        manager.startDiscovery();
        QCOMPARE(manager.discoveredServers().size(), 1); // emptied through the queue
        settle();
        QVERIFY(manager.discoveredServers().isEmpty());
        QCOMPARE(b.calls, (QStringList{"browse 1", "resolve A", "stop 1", "browse 2"}));
    }

    void resultsOfAnOlderBrowseAreDropped()
    {
        auto backend = std::make_unique<ScriptedDiscoveryBackend>();
        ScriptedDiscoveryBackend &b = *backend;
        BonjourDiscoveryManager manager(std::move(backend));
        manager.startDiscovery();
        b.found(QStringLiteral("Old"));
        settle();
        const quint64 oldResolution = b.resolutionOf(QStringLiteral("Old"));
        const quint64 oldBrowse = b.browse;
        manager.stopDiscovery();
        settle();
        manager.startDiscovery();
        settle();
        Q_EMIT b.serviceResolved(oldResolution, QStringLiteral("old.local"), 5905, {});
        b.found(QStringLiteral("Late"), 2, 0, oldBrowse);
        Q_EMIT b.browseStopped(oldBrowse, QStringLiteral("gone"));
        settle();
        QVERIFY(manager.discoveredServers().isEmpty());
        QVERIFY(manager.isDiscovering());
        QVERIFY(!b.calls.contains("resolve Late"));
    }

    void browseEndsWhenTheDaemonIsMissingOrGone()
    {
        LogLines::clear();
        auto backend = std::make_unique<ScriptedDiscoveryBackend>();
        ScriptedDiscoveryBackend &b = *backend;
        BonjourDiscoveryManager manager(std::move(backend));
        manager.startDiscovery();
        Q_EMIT b.browseCouldNotStart(b.browse, QStringLiteral("no Avahi daemon is running"));
        QVERIFY(manager.isDiscovering());
        settle();
        QVERIFY(!manager.isDiscovering());
        QCOMPARE(LogLines::count(QStringLiteral("WARN"),
                                 QStringLiteral("Local network search could not start: no Avahi "
                                                "daemon is running")),
                 1);

        manager.startDiscovery();
        b.found(QStringLiteral("A"));
        settle();
        b.resolved(QStringLiteral("A"), QStringLiteral("a.local"), 5905);
        Q_EMIT b.browseStopped(b.browse, QStringLiteral("the Avahi daemon went away"));
        settle();
        QVERIFY(!manager.isDiscovering());
        QCOMPARE(rows(manager), QStringList{"A@a.local:5905"}); // kept, as after a stop
    }
};

QTEST_GUILESS_MAIN(DiscoveryTest)
#include "DiscoveryTest.moc"
