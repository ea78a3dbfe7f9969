#include "ScriptedDiscoveryBackend.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "discovery/forms/AddComputerView.h"
#include "discovery/forms/DiscoveredServerListModel.h"
#include "discovery/forms/EditComputerView.h"
#include "discovery/forms/PortText.h"
#include "discovery/forms/TagsText.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace {

// A store, a discovery manager over a scripted backend, and an add form over both.
struct AddFormHarness {
    explicit AddFormHarness(std::chrono::milliseconds searchDuration = 20s)
    {
        auto scripted = std::make_unique<ScriptedDiscoveryBackend>();
        backend = scripted.get();
        discovery = std::make_unique<BonjourDiscoveryManager>(std::move(scripted));
        view = std::make_unique<AddComputerView>(state, *discovery, searchDuration);
    }
    ~AddFormHarness() { state.waitForPendingWrites(); }

    // Announces and resolves a server; returns its id.
    QUuid announce(const QString &name, const QString &host, int port,
                   const QList<QByteArray> &txt = {})
    {
        backend->found(name);
        QCoreApplication::processEvents();
        backend->resolved(name, host, port, txt);
        QCoreApplication::processEvents();
        return discovery->discoveredServers().constLast().id();
    }
    QStringList rowHosts() const
    {
        QStringList hosts;
        for (const DiscoveredServer &server : view->rows().servers())
            hosts << server.address();
        return hosts;
    }

    AppState state;
    ScriptedDiscoveryBackend *backend;
    std::unique_ptr<BonjourDiscoveryManager> discovery;
    std::unique_ptr<AddComputerView> view;
};

RemoteComputer computerAt(const QString &host)
{
    RemoteComputer computer;
    computer.host = host;
    return computer;
}

} // namespace

class ComputerFormsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove(SettingsFiles::sharedSuitePath()); }

    void portText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("port"); // -1: does not parse
        const QList<std::pair<const char *, int>> cases{
            {"5905", 5905},
            {"+5905", 5905},
            {"05905", 5905},
            {"65535", 65535},
            {"0000000000000000000065535", 65535},
            {"0", 0},
            {"+0", 0},
            {"-0", 0},
            {"-000", 0},
            {"65536", -1},
            {"99999999999999999999", -1},
            {"-1", -1},
            {"-", -1},
            {"+", -1},
            {"+-5", -1},
            {"++5", -1},
            {"", -1},
            {" 5905", -1},
            {"5905 ", -1},
            {"\t5905", -1},
            {"5905\n", -1},
            {"59 05", -1},
            {"0x10", -1},
            {"5e3", -1},
        };
        for (const auto &[text, port] : cases)
            QTest::newRow(text) << QString::fromUtf8(text) << port;
        QTest::newRow("Arabic-Indic digits") << QStringLiteral(u"٥٩٠٥") << -1;
        QTest::newRow("full-width digits") << QStringLiteral(u"５９０５") << -1;
    }

    // The parser, and what each form makes of the same text: the add form takes 0, the
    // edit form wants 1 to 65535.
    void portText()
    {
        QFETCH(QString, text);
        QFETCH(int, port);
        const std::optional<quint16> parsed = PortText::parse(text);
        QCOMPARE(parsed ? int(*parsed) : -1, port);

        AddFormHarness add;
        add.view->setHost(QStringLiteral("h"));
        add.view->setUsername(QStringLiteral("u"));
        add.view->setPassword(QStringLiteral("p"));
        add.view->setPort(text);
        QCOMPARE(add.view->addNow(), port >= 0 ? AddComputerView::AddOutcome::added
                                               : AddComputerView::AddOutcome::invalidPort);
        QCOMPARE(add.view->isPresented(), port < 0);
        if (port >= 0)
            QCOMPARE(int(add.state.computers().constLast().port), port);

        EditComputerView edit(add.state, computerAt(QStringLiteral("h")));
        edit.setPort(text);
        QCOMPARE(edit.validationErrors().value(EditComputerView::portKey),
                 port > 0 ? QString()
                          : QStringLiteral("Port must be a number between 1 and 65535"));
    }

    void tagsText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("tags");
        QTest::newRow("empty pieces skipped") << "a, b,,c" << QStringList{"a", "b", "c"};
        QTest::newRow("a blank piece is an empty tag") << "a, ,b" << QStringList{"a", "", "b"};
        QTest::newRow("spaces and tabs trimmed")
            << " \tlab one\t , x" << QStringList{"lab one", "x"};
        QTest::newRow("other blanks kept") << "a\n,\u00a0b" << QStringList{"a\n", "\u00a0b"};
        QTest::newRow("nothing") << "" << QStringList{};
        QTest::newRow("only commas") << ",,," << QStringList{};
    }

    void tagsText()
    {
        QFETCH(QString, text);
        QTEST(TagsText::split(text), "tags");
    }

    void rowsHideConfiguredHostsAndFollowTheirChanges()
    {
        AddFormHarness f;
        RemoteComputer configured = computerAt(QStringLiteral("192.168.1.10"));
        f.state.addComputer(configured);
        f.state.addComputer(computerAt(QStringLiteral("192.168.1.11 "))); // trailing blank
        f.view->appear();
        f.announce(QStringLiteral("Ten"), QStringLiteral("192.168.1.10"), 6000); // other port
        f.announce(QStringLiteral("Eleven"), QStringLiteral("192.168.1.11"), 5905);
        const QUuid studio =
            f.announce(QStringLiteral("Studio"), QStringLiteral("studio.local"), 5905);
        QCOMPARE(f.rowHosts(), (QStringList{"192.168.1.11:5905", "studio.local:5905"}));

        // Statistics and status leave the rows alone.
        f.view->selectServer(studio);
        QSignalSpy inserted(&f.view->rows(), &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&f.view->rows(), &QAbstractItemModel::rowsRemoved);
        SystemStats stats;
        stats.osVersion = QStringLiteral("Linux");
        f.state.applySystemStats(configured.id, stats);
        f.state.updateConnectionStatus(configured.id, true);
        QCOMPARE(inserted.size() + removed.size(), 0);

        // A computer added meanwhile (automation) hides its row; the rest stay as they were.
        f.state.addComputer(computerAt(QStringLiteral("192.168.1.11")));
        QCOMPARE(f.rowHosts(), QStringList{"studio.local:5905"});
        QCOMPARE(removed.size(), 1);
        QCOMPARE(f.view->selectedServer()->id(), studio);
        // A host edited away brings its row back, in the manager's order.
        configured.host = QStringLiteral("10.0.0.1");
        f.state.updateComputer(configured);
        QCOMPARE(f.rowHosts(), (QStringList{"192.168.1.10:6000", "studio.local:5905"}));
    }

    void selectingARowFillsTheFields()
    {
        AddFormHarness f;
        f.view->appear();
        const QUuid bare = f.announce(QStringLiteral("Bare"), QStringLiteral("bare.local"), 6001);
        const QUuid named = f.announce(QStringLiteral("Named"), QStringLiteral("named.local"), 5905,
                                       {"name=Studio Mac"});
        f.view->setUsername(QStringLiteral("admin"));
        f.view->setPassword(QStringLiteral("secret"));
        f.view->setName(QStringLiteral("typed"));

        f.view->selectServer(named);
        QCOMPARE(f.view->name(), QStringLiteral("Studio Mac"));
        f.view->selectServer(bare);
        QCOMPARE(f.view->selectedServer()->id(), bare);
        QCOMPARE(f.view->host(), QStringLiteral("bare.local"));
        QCOMPARE(f.view->port(), QStringLiteral("6001"));
        QCOMPARE(f.view->name(), QString());
        QCOMPARE(f.view->username(), QStringLiteral("admin"));

        QCOMPARE(f.view->addNow(), AddComputerView::AddOutcome::added);
        const RemoteComputer added = f.state.computers().constLast();
        QVERIFY(!added.name);
        QCOMPARE(added.connectionString(), QStringLiteral("bare.local:6001"));
    }

    void addNowNeedsHostAndCredentialsAsTyped()
    {
        AddFormHarness f;
        f.view->appear();
        QVERIFY(!f.view->canAddNow());
        QCOMPARE(f.view->addNow(), AddComputerView::AddOutcome::notReady);
        const QString host = QString(10000, u'h') + QStringLiteral("\n.local");
        f.view->setHost(host);
        f.view->setUsername(QStringLiteral(" "));
        QVERIFY(!f.view->canAddNow());
        f.view->setPassword(QStringLiteral(" pass "));
        QVERIFY(f.view->canAddNow());
        f.view->setUsername(QString());
        QVERIFY(!f.view->canAddNow());
        f.view->setUsername(QStringLiteral(" "));

        QSignalSpy closed(f.view.get(), &AddComputerView::closed);
        QCOMPARE(f.view->addNow(), AddComputerView::AddOutcome::added);
        QCOMPARE(closed.size(), 1);
        QVERIFY(!f.view->isDiscovering());
        QVERIFY(f.backend->calls.contains("stop 1"));
        const RemoteComputer added = f.state.computers().constLast();
        QVERIFY(!added.id.isNull());
        QCOMPARE(added.host, host);
        QCOMPARE(added.username, QStringLiteral(" "));
        QCOMPARE(added.password, QStringLiteral(" pass "));
        QCOMPARE(added.port, RemoteComputer::defaultPort);
        QVERIFY(!added.name && !added.description && added.tags.isEmpty());
        QVERIFY(!added.isConnected && !added.isConnecting && !added.lastConnected &&
                !added.thumbnailImage && !added.lastError && !added.systemStats);
    }

    void handEntryStopsTheSearchAndCancellingItSearchesAfresh()
    {
        AddFormHarness f;
        f.view->appear();
        const QUuid id = f.announce(QStringLiteral("A"), QStringLiteral("a.local"), 5905);
        f.view->selectServer(id);
        f.view->openManualEntry();
        QVERIFY(f.view->showManualEntry() && !f.view->isDiscovering());
        QCoreApplication::processEvents();
        QCOMPARE(f.view->listState(), AddComputerView::ListState::rows); // kept

        f.view->cancelManualEntry();
        QVERIFY(!f.view->showManualEntry() && f.view->isDiscovering());
        QCOMPARE(f.view->rows().rowCount(), 0);
        QVERIFY(!f.view->selectedServer());
        QCOMPARE(f.view->listState(), AddComputerView::ListState::searching);
        QCOMPARE(f.backend->calls, (QStringList{"browse 1", "resolve A", "stop 1", "browse 2"}));
    }

    void theSearchStopsAfterItsTime()
    {
        AddFormHarness f(50ms);
        f.view->appear();
        QTRY_VERIFY(!f.view->isDiscovering());
        QVERIFY(!f.discovery->isDiscovering());
        QCOMPARE(f.view->listState(), AddComputerView::ListState::nothingFound);
        f.view->startSearch(); // "Search again"
        QVERIFY(f.view->isDiscovering());
        QTRY_COMPARE(f.backend->calls.count("stop 2"), 1);
        f.view->dismiss();
        QCOMPARE(f.backend->calls.size(), 4);
    }

    void editValidatesInOrderWithItsMessages()
    {
        AddFormHarness f;
        RemoteComputer computer = computerAt(QString());
        computer.port = 0;
        EditComputerView edit(f.state, computer);
        QSignalSpy validated(&edit, &EditComputerView::validated);
        edit.appear();
        QStringList order;
        for (const QList<QVariant> &call : validated)
            order << call.first().toString();
        QCOMPARE(order, (QStringList{"host", "port", "username", "password"}));
        QCOMPARE(edit.validationErrors(),
                 (QMap<QString, QString>{{"host", "Host IP address is required"},
                                         {"port", "Port must be a number between 1 and 65535"},
                                         {"username", "Username is required"},
                                         {"password", "Password is required"}}));
        QVERIFY(!edit.isFormValid());
        edit.setHost(QStringLiteral(" "));
        edit.setPort(QStringLiteral("+5905"));
        edit.setUsername(QStringLiteral("u"));
        QVERIFY(!edit.isFormValid());
        edit.setPassword(QStringLiteral("p"));
        QVERIFY(edit.isFormValid() && edit.validationErrors().isEmpty());
        edit.setPort(QString());
        QCOMPARE(edit.validationErrors().keys(), QStringList{"port"});
    }

    void saveWritesIntoTheLiveRecord()
    {
        AddFormHarness f;
        RemoteComputer computer = computerAt(QStringLiteral("old.local"));
        computer.name = QStringLiteral("Old");
        computer.description = QStringLiteral("desk");
        computer.tags = {QStringLiteral("a"), QStringLiteral("b")};
        f.state.addComputer(computer);
        EditComputerView edit(f.state, computer);
        QCOMPARE(edit.subtitle(), QStringLiteral("Configure connection settings for Old"));
        QCOMPARE(edit.tags(), QStringLiteral("a, b"));

        // The session layer keeps writing while the form is open.
        f.state.updateConnectionStatus(computer.id, true);
        SystemStats stats;
        stats.macModel = QStringLiteral("Model");
        f.state.applySystemStats(computer.id, stats);
        f.state.storeThumbnail(computer.id, QByteArray("jpeg"));
        QTRY_VERIFY(f.state.computer(computer.id)->thumbnailImage);

        edit.setName(QString());
        edit.setHost(QStringLiteral("new.local"));
        edit.setPort(QStringLiteral("not a port"));
        edit.setDescription(QString());
        edit.setTags(QStringLiteral("x, ,y,,"));
        QSignalSpy closed(&edit, &EditComputerView::closed);
        edit.save();
        QCOMPARE(closed.size(), 1);
        const RemoteComputer saved = *f.state.computer(computer.id);
        QVERIFY(!saved.name && !saved.description);
        QCOMPARE(saved.connectionString(), QStringLiteral("new.local:5905"));
        QCOMPARE(saved.tags, (QStringList{"x", "", "y"}));
        QVERIFY(saved.isConnected && saved.lastConnected && saved.systemStats == stats);
        QCOMPARE(saved.thumbnailImage, QByteArray("jpeg"));

        // Removed while its form is open: saving leaves the list alone.
        EditComputerView late(f.state, saved);
        f.state.removeComputer(computer.id);
        late.save();
        QVERIFY(f.state.computers().isEmpty());
        QVERIFY(!late.isPresented());
    }
};

QTEST_GUILESS_MAIN(ComputerFormsTest)
#include "ComputerFormsTest.moc"
