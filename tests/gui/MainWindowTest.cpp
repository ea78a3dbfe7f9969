#include "app/MainWindow.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "ui/ComputerTableModel.h"

#include <QAction>
#include <QFile>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

namespace {

// Records what the window asks of the session layer.
class RecordingManager : public ZEKTManager {
public:
    QStringList calls;
    void connectToComputer(const RemoteComputer &c) override { calls << "connect " + c.host; }
    void disconnectFromComputer(const RemoteComputer &c) override
    {
        calls << "disconnect " + c.host;
    }
    void requestManualPreview(const RemoteComputer &c) override { calls << "preview " + c.host; }
};

QAction *action(QWidget &window, const QString &text)
{
    for (QAction *a : window.findChildren<QAction *>()) {
        if (a->text() == text)
            return a;
    }
    return nullptr;
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsComputersAndFollowsTheirStatus()
    {
        QFile::remove(SettingsFiles::sharedSuitePath());
        AppState state;
        RemoteComputer named;
        named.name = QStringLiteral("Studio Mac");
        named.host = QStringLiteral("10.0.0.7");
        RemoteComputer bare;
        bare.host = QStringLiteral("build-02.local");
        bare.port = 6000;
        state.addComputer(named);
        state.addComputer(bare);

        MainWindow window(state);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto *table = window.findChild<QTableView *>();
        QVERIFY(table);
        QAbstractItemModel *model = table->model();
        QCOMPARE(model->rowCount(), 2);
        const auto cell = [model](int row, int column) {
            return model->index(row, column).data().toString();
        };
        QCOMPARE(cell(0, ComputerTableModel::NameColumn), QStringLiteral("Studio Mac"));
        QCOMPARE(cell(1, ComputerTableModel::NameColumn), QStringLiteral("build-02.local"));
        QCOMPARE(cell(1, ComputerTableModel::AddressColumn), QStringLiteral("build-02.local:6000"));
        QCOMPARE(cell(0, ComputerTableModel::StatusColumn), QStringLiteral("Disconnected"));

        // A status change updates its row in place.
        QSignalSpy resets(model, &QAbstractItemModel::modelReset);
        QSignalSpy changes(model, &QAbstractItemModel::dataChanged);
        state.updateConnectingStatus(named.id, true);
        QCOMPARE(cell(0, ComputerTableModel::StatusColumn), QStringLiteral("Connecting"));
        state.updateConnectionStatus(named.id, false, QStringLiteral("Connection refused"));
        QCOMPARE(cell(0, ComputerTableModel::LastErrorColumn),
                 QStringLiteral("Connection refused"));
        QCOMPARE(resets.size(), 0);
        QCOMPARE(changes.size(), 2);
        QCOMPARE(changes.first().at(0).toModelIndex().row(), 0);

        state.removeComputer(named.id);
        QCOMPARE(model->rowCount(), 1);
        QVERIFY(!window.grab().isNull());
        state.waitForPendingWrites();
    }

    void actionsFollowTheSelectedComputer()
    {
        QFile::remove(SettingsFiles::sharedSuitePath());
        auto manager = std::make_unique<RecordingManager>();
        RecordingManager *calls = manager.get();
        AppState state(std::move(manager));
        RemoteComputer computer;
        computer.host = QStringLiteral("lab.local");
        state.addComputer(computer);
        MainWindow window(state);
        QAction *connectAction = action(window, QStringLiteral("Connect"));
        QAction *disconnectAction = action(window, QStringLiteral("Disconnect"));
        QAction *previewAction = action(window, QStringLiteral("Refresh Preview"));
        QVERIFY(connectAction && disconnectAction && previewAction);
        QVERIFY(!connectAction->isEnabled()); // nothing selected

        window.findChild<QTableView *>()->selectRow(0);
        QVERIFY(connectAction->isEnabled() && !disconnectAction->isEnabled());
        connectAction->trigger();
        state.updateConnectionStatus(computer.id, true);
        QVERIFY(!connectAction->isEnabled() && previewAction->isEnabled());
        previewAction->trigger();
        disconnectAction->trigger();
        QCOMPARE(calls->calls,
                 (QStringList{"connect lab.local", "preview lab.local", "disconnect lab.local"}));
        state.waitForPendingWrites();
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
