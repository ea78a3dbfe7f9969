// The interim window: the dashboard, a computer's detail on choosing its card, the way
// back, and the detail's actions reaching the session manager and the store.
#include "app/MainWindow.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "ui/ComputerCardView.h"
#include "ui/ComputerDetailView.h"
#include "ui/DashboardView.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QPushButton>
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

RemoteComputer computerAt(const QString &host)
{
    RemoteComputer computer;
    computer.host = host;
    return computer;
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove(SettingsFiles::sharedSuitePath()); }

    void choosingACardShowsItsDetailAndBack()
    {
        AppState state;
        const RemoteComputer studio = computerAt("studio.local");
        const RemoteComputer lab = computerAt("lab.local");
        state.addComputer(studio);
        state.addComputer(lab);
        MainWindow window(state);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.dashboard()->cards().size(), 2);
        QVERIFY(!window.detail());

        ComputerCardView *card = window.dashboard()->cards().at(1);
        QTest::mouseClick(card, Qt::LeftButton);
        QVERIFY(window.detail());
        QCOMPARE(window.detail()->computerId(), lab.id);
        QVERIFY(window.detail()->isVisible() && !window.dashboard()->isVisible());
        QCOMPARE(QApplication::focusWidget(), window.detail()->actionButtons().first());

        // Back by keyboard, onto the card that was chosen, and in again.
        QTest::keySequence(&window, QKeySequence::Back);
        QVERIFY(!window.detail());
        QVERIFY(window.dashboard()->isVisible());
        QCOMPARE(QApplication::focusWidget(), card);
        QTest::keyClick(card, Qt::Key_Space);
        QVERIFY(window.detail() && window.detail()->computerId() == lab.id);
        window.showDashboard();

        // Removing the computer whose detail shows returns to the dashboard.
        window.showComputer(studio.id);
        state.removeComputer(studio.id);
        QVERIFY(!window.detail());
        QCOMPARE(window.dashboard()->cards().size(), 1);
        state.waitForPendingWrites();
    }

    void detailActionsReachTheManagerAndTheStore()
    {
        auto manager = std::make_unique<RecordingManager>();
        RecordingManager *calls = manager.get();
        AppState state(std::move(manager));
        const RemoteComputer lab = computerAt("lab.local");
        state.addComputer(lab);
        MainWindow window(state);
        window.showComputer(lab.id);
        const QList<QPushButton *> buttons = window.detail()->actionButtons();

        buttons.at(0)->click(); // Connect
        state.updateConnectionStatus(lab.id, true);
        window.detail()->updatePreviewButton()->click();
        buttons.at(0)->click(); // Disconnect
        QCOMPARE(calls->calls,
                 (QStringList{"connect lab.local", "preview lab.local", "disconnect lab.local"}));
        state.waitForPendingWrites();
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
