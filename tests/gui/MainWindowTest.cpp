// The main window with fake forms, a fake session manager and scripted alerts: start-up
// order, navigation by mouse and keyboard, the add, edit and delete flows, the settings
// window, pending actions on activation, and accessible names on every focusable control.
#include "app/MainWindow.h"
#include "FakeZEKTManager.h"
#include "ScriptedAlertPresenter.h"
#include "app/ConsoleStartup.h"
#include "app/LaunchAnimationPresenter.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/PendingActionKeys.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "state/MainWindowState.h"
#include "state/SupervisionController.h"
#include "ui/ComputerCardView.h"
#include "ui/ComputerDetailView.h"
#include "ui/ComputerFormFactory.h"
#include "ui/ComputerListView.h"
#include "ui/DashboardView.h"
#include "ui/LogsView.h"
#include "ui/QtAlertPresenter.h"
#include "ui/SettingsView.h"
#include "ui/TechnicalSpecGrid.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {

class FakeForms : public ComputerFormFactory {
public:
    QStringList calls;
    void openAddForm(QWidget *) override { calls << QStringLiteral("add"); }
    void openEditForm(const QUuid &id, QWidget *) override
    {
        calls << QStringLiteral("edit ") + UuidText::format(id);
    }
};

RemoteComputer computerNamed(const QString &name, const QString &host)
{
    RemoteComputer computer;
    computer.name = name;
    computer.host = host;
    return computer;
}

SystemStats someStatistics()
{
    SystemStats stats;
    stats.totalMemory = 16ull << 30;
    stats.freeMemory = 4ull << 30;
    stats.totalDiskSpace = 500ull << 30;
    stats.freeDiskSpace = 200ull << 30;
    stats.osVersion = QStringLiteral("macOS 14.4");
    stats.macModel = QStringLiteral("Mac14,13");
    stats.cpuUsage = 0.2;
    return stats;
}

NavigationItem selected(const AppState &state)
{
    return state.selectedItem();
}

} // namespace

namespace QTest {
template <> char *toString(const NavigationItem &item)
{
    return qstrdup(QStringLiteral("%1 %2")
                       .arg(int(item.kind))
                       .arg(item.computerId.toString())
                       .toUtf8()
                       .constData());
}
} // namespace QTest

class MainWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<AppState> m_state;
    FakeZEKTManager *m_manager = nullptr;
    ScriptedAlertPresenter m_alerts;
    FakeForms m_forms;
    RemoteComputer m_studio, m_lab, m_unnamed;

    std::unique_ptr<MainWindow> makeWindow(AlertPresenter *alerts = nullptr)
    {
        auto window = std::make_unique<MainWindow>(*m_state, nullptr, &m_forms, nullptr,
                                                   alerts ? alerts : &m_alerts);
        window->show();
        window->appear();
        if (!QTest::qWaitForWindowExposed(window.get()))
            qFatal("the window was not exposed");
        return window;
    }

private Q_SLOTS:
    void init()
    {
        QFile::remove(SettingsFiles::sharedSuitePath());
        auto manager = std::make_unique<FakeZEKTManager>();
        m_manager = manager.get();
        m_state = std::make_unique<AppState>(std::move(manager));
        m_studio = computerNamed(QStringLiteral("Studio"), QStringLiteral("studio.local"));
        m_studio.systemStats = someStatistics();
        m_lab = computerNamed(QStringLiteral("Lab"), QStringLiteral("lab.local"));
        m_unnamed = computerNamed(QString(), QStringLiteral("10.0.0.9"));
        for (const RemoteComputer &computer : {m_studio, m_lab, m_unnamed})
            m_state->addComputer(computer);
        m_alerts.script.clear();
        m_alerts.shown.clear();
        m_forms.calls.clear();
    }

    void cleanup()
    {
        m_state->waitForPendingWrites();
        m_state.reset();
    }

    void startupInstallsTheReporterThenAppearsThenIsReady()
    {
        MainWindow window(*m_state, nullptr, &m_forms, nullptr, &m_alerts);
        ConsoleStartup startup(window);
        QStringList order;
        startup.setCrashReporterInstall([&] {
            order << QStringLiteral("install visible=%1 appeared=%2")
                         .arg(window.isVisible())
                         .arg(window.state()->hasAppeared());
        });
        connect(window.state(), &MainWindowState::appeared, this,
                [&] { order << QStringLiteral("appeared"); });
        QSignalSpy ready(&window, &MainWindow::isAppReadyChanged);
        startup.start();
        startup.start(); // once only
        QVERIFY(window.isVisible());
        QVERIFY(order.isEmpty());

        QCoreApplication::processEvents(); // the first turn
        QCOMPARE(order, (QStringList{"install visible=1 appeared=0", "appeared"}));
        QVERIFY(!window.isAppReady());
        QVERIFY(!window.launchAnimation()->isAppReady());
        QCoreApplication::processEvents(); // one turn later
        QVERIFY(window.isAppReady());
        QCOMPARE(ready.size(), 1);
        // The ripple hears it; offscreen it is skipped and still completes.
        QVERIFY(window.launchAnimation()->isAppReady());
        QTRY_VERIFY(!window.launchAnimation()->isPlaying());
        // File first, then Help.
        QStringList menus;
        for (QAction *menu : window.menuBar()->actions())
            menus << menu->text();
        QCOMPARE(menus, (QStringList{"&File", "&Help"}));
        QCoreApplication::processEvents();
        QCOMPARE(order.size(), 2);
    }

    void windowSizesAndItsPlacementSurvive()
    {
        {
            const auto window = makeWindow();
            QCOMPARE(window->size(), QSize(1000, 700));
            QCOMPARE(window->minimumSize(), QSize(800, 600));
            QCOMPARE(window->sidebar()->width(), MainWindow::sidebarWidth);
            window->resize(900, 650);
            window->close();
        }
        QCOMPARE(makeWindow()->size(), QSize(900, 650));

        // Stored on a screen that is gone: back on the one there is.
        {
            const auto window = makeWindow();
            window->setGeometry(QRect(QPoint(9000, 9000), QSize(900, 650)));
            window->close();
        }
        const auto window = makeWindow();
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY2(screen.intersects(window->geometry()),
                 qPrintable(QStringLiteral("%1,%2").arg(window->x()).arg(window->y())));
    }

    void navigatesByMouseAndArrowKeys()
    {
        const auto window = makeWindow();
        ComputerListView *sidebar = window->sidebar();
        QCOMPARE(window->currentPage(), window->dashboard());
        QVERIFY(sidebar->dashboardRow()->isChecked());

        QTest::mouseClick(sidebar->logsRow(), Qt::LeftButton);
        QCOMPARE(window->currentPage(), window->logs());
        QCOMPARE(selected(*m_state), NavigationItem::logs());
        QListView *list = sidebar->computerList();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(1, 0)).center());
        QCOMPARE(selected(*m_state), NavigationItem::computer(m_lab.id));
        QCOMPARE(window->currentPage(), window->detail());
        QCOMPARE(window->detail()->computerId(), m_lab.id);
        QVERIFY(!sidebar->logsRow()->isChecked());

        // Arrows walk Dashboard, the three computers and Logs as one list.
        sidebar->dashboardRow()->setFocus();
        const QList<NavigationItem> down = {
            NavigationItem::computer(m_studio.id), NavigationItem::computer(m_lab.id),
            NavigationItem::computer(m_unnamed.id), NavigationItem::logs()};
        for (const NavigationItem &expected : down) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
            QCOMPARE(selected(*m_state), expected);
        }
        QCOMPARE(QApplication::focusWidget(), sidebar->logsRow());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
        QCOMPARE(selected(*m_state), NavigationItem::computer(m_unnamed.id));
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
        QCOMPARE(selected(*m_state), NavigationItem::dashboard());
        QCOMPARE(window->currentPage(), window->dashboard());

        // A selection made elsewhere (a card, automation) shows in the sidebar.
        QTest::mouseClick(window->dashboard()->cards().at(2), Qt::LeftButton);
        QCOMPARE(list->currentIndex().row(), 2);
        m_state->setSelectedItem(NavigationItem::logs());
        QCOMPARE(window->currentPage(), window->logs());
        QVERIFY(sidebar->logsRow()->isChecked() && list->selectionModel()->selection().isEmpty());
    }

    void addAndEditOpenTheForms()
    {
        const auto window = makeWindow();
        QTest::mouseClick(window->sidebar()->addButton(), Qt::LeftButton);
        QListView *list = window->sidebar()->computerList();
        const QPoint lab = list->visualRect(list->model()->index(1, 0)).center();
        Q_EMIT list->customContextMenuRequested(lab);
        auto *menu = window->sidebar()->findChild<QMenu *>();
        QVERIFY(menu);
        QCOMPARE(menu->actions().size(), 2);
        QCOMPARE(menu->actions().at(0)->text(), QStringLiteral("Edit..."));
        QCOMPARE(menu->actions().at(1)->text(), QStringLiteral("Delete..."));
        menu->actions().at(0)->trigger();
        QCOMPARE(m_forms.calls,
                 (QStringList{"add", QStringLiteral("edit ") + UuidText::format(m_lab.id)}));
    }

    void detailActionsReachTheManagerAndQuitClosesTheWindows()
    {
        const auto window = makeWindow();
        window->state()->select(NavigationItem::computer(m_lab.id));
        const QList<QPushButton *> buttons = window->detail()->actionButtons();
        buttons.at(0)->click(); // Connect
        m_state->updateConnectionStatus(m_lab.id, true);
        buttons.at(0)->click(); // Disconnect
        QCOMPARE(m_manager->calls, (QStringList{"connect Lab", "disconnect Lab"}));

        window->showSettings();
        QAction *quit = nullptr;
        for (QAction *action : window->actions())
            quit = action->text() == QStringLiteral("Quit") ? action : quit;
        QVERIFY(quit && quit->shortcut() == QKeySequence(QStringLiteral("Ctrl+Q")));
        quit->trigger();
        QVERIFY(!window->isVisible());
        QTRY_VERIFY(!window->settingsWindow());
    }

    void deleteAsksThenDisconnectsRemovesAndMovesTheSelection_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("selectTheDeleted");
        QTest::addColumn<bool>("connected");
        QTest::newRow("selected, connected") << 0 << true << true;
        QTest::newRow("another, offline") << 0 << false << false;
        QTest::newRow("cancel") << 1 << true << true;
        QTest::newRow("closed") << int(AlertPresenter::closed) << true << false;
    }

    void deleteAsksThenDisconnectsRemovesAndMovesTheSelection()
    {
        QFETCH(int, answer);
        QFETCH(bool, selectTheDeleted);
        QFETCH(bool, connected);
        if (connected)
            m_state->updateConnectionStatus(m_unnamed.id, true);
        const auto window = makeWindow();
        const NavigationItem before =
            NavigationItem::computer(selectTheDeleted ? m_unnamed.id : m_studio.id);
        window->state()->select(before);

        // The Delete key on the selected row asks; the host names a computer without a name.
        QListView *list = window->sidebar()->computerList();
        list->setFocus();
        list->selectionModel()->setCurrentIndex(list->model()->index(2, 0),
                                                QItemSelectionModel::NoUpdate);
        m_alerts.script = {answer};
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(m_alerts.shown.size(), 1);
        const Alert alert = m_alerts.shown.first();
        QCOMPARE(alert.title, QStringLiteral("Delete Computer"));
        QCOMPARE(alert.text, QStringLiteral("Are you sure you want to delete '10.0.0.9'? This "
                                            "action cannot be undone."));
        QCOMPARE(alert.buttons, (QStringList{"Delete", "Cancel"}));
        QCOMPARE(alert.destructiveButton, 0);
        QCOMPARE(alert.cancelButton, 1);
        QTRY_VERIFY(!window->state()->isConfirmingDelete());

        const bool deleted = answer == 0;
        QCOMPARE(m_state->computer(m_unnamed.id).has_value(), !deleted);
        QCOMPARE(m_manager->calls,
                 deleted && connected ? QStringList{"disconnect 10.0.0.9"} : QStringList{});
        const NavigationItem expected =
            deleted && selectTheDeleted ? NavigationItem::dashboard() : before;
        QCOMPARE(selected(*m_state), expected);
        QCOMPARE(*window->state()->selectedItem(), expected);
        QCOMPARE(list->model()->rowCount(), deleted ? 2 : 3);
        if (deleted && selectTheDeleted) {
            QCOMPARE(window->currentPage(), window->dashboard());
            QVERIFY(window->state()->currentComputerSnapshot().id != m_unnamed.id);
            QCOMPARE(window->state()->currentComputerSnapshot().port, quint16(5905));
        }
    }

    void aComputerGoneWhileItsConfirmationShowsIsLeftAlone()
    {
        QtAlertPresenter alerts;
        const auto window = makeWindow(&alerts);
        window->state()->select(NavigationItem::computer(m_lab.id));
        QCOMPARE(selected(*m_state), NavigationItem::computer(m_lab.id));
        window->state()->requestDelete(m_lab.id);
        QMessageBox *box = nullptr;
        QTRY_VERIFY((box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())));
        m_state->removeComputer(m_lab.id); // from the detail, or from the command line
        QCOMPARE(selected(*m_state), NavigationItem::dashboard());
        QTest::mouseClick(box->buttons().first() == box->button(QMessageBox::Cancel)
                              ? box->buttons().last()
                              : box->buttons().first(),
                          Qt::LeftButton);
        QTRY_VERIFY(!window->state()->isConfirmingDelete());
        QCOMPARE(m_state->computers().size(), 2);
        QVERIFY(m_manager->calls.isEmpty());

        // Escape answers Cancel.
        window->state()->requestDelete(m_studio.id);
        QTRY_VERIFY((box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())));
        QTest::keyClick(box, Qt::Key_Escape);
        QTRY_VERIFY(!window->state()->isConfirmingDelete());
        QVERIFY(m_state->computer(m_studio.id));
    }

    void settingsTogglesReachOpenViewsAtOnce()
    {
        Preferences::shared().setBoolValue(QLatin1String(PreferenceKeys::pillsShowOS), true);
        const auto window = makeWindow();
        window->state()->select(NavigationItem::computer(m_studio.id));
        const auto pillCount = [](QWidget *view) {
            int count = 0;
            for (const TechnicalSpecGrid *grid : view->findChildren<TechnicalSpecGrid *>())
                count += int(grid->pills().size());
            return count;
        };
        const int detailPills = pillCount(window->detail());
        const int cardPills = pillCount(window->dashboard()->cards().first());
        QVERIFY(detailPills > 0 && cardPills > 0);

        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTest::keySequence(window.get(), QKeySequence(QStringLiteral("Ctrl+,")));
        SettingsView *settings = window->settingsWindow();
        QVERIFY(settings && settings->isVisible());
        QCOMPARE(settings->width(), SettingsView::windowWidth);
        QCOMPARE(settings->toggles().size(), 16);
        QCOMPARE(settings->toggles().at(1)->text(), QStringLiteral("OS"));
        settings->toggles().at(1)->click();
        QCOMPARE(pillCount(window->detail()), detailPills - 1);
        QCOMPARE(pillCount(window->dashboard()->cards().first()), cardPills - 1);
        QVERIFY(!Preferences::shared().boolValue(QLatin1String(PreferenceKeys::pillsShowOS)));

        settings->toggles().at(0)->click(); // supervision
        QVERIFY(Preferences::shared().boolValue(
            QLatin1String(PreferenceKeys::supervisionAutoConnectAll)));
        settings->toggles().at(0)->click();
        settings->toggles().at(1)->click();

        QTest::keyClick(settings->toggles().at(3), Qt::Key_Escape);
        QTRY_VERIFY(!window->settingsWindow());
    }

    void nonBooleanPreferencesShowTheDefaults()
    {
        {
            const auto settings = SettingsFiles::openStandard();
            settings->setValue(QLatin1String(PreferenceKeys::pillsShowModel), "maybe");
            settings->setValue(QLatin1String(PreferenceKeys::supervisionAutoConnectAll), 7);
            settings->sync();
        }
        Preferences::shared().reload();
        SettingsView settings;
        QVERIFY(!settings.toggles().at(0)->isChecked());
        QVERIFY(settings.toggles().at(2)->isChecked());
        settings.toggles().at(2)->click();
        QVERIFY(!Preferences::shared().boolValue(QLatin1String(PreferenceKeys::pillsShowModel)));
        settings.toggles().at(2)->click();
    }

    void pendingActionsRunOnEachActivationOnly()
    {
        SupervisionController supervision(*m_state, Preferences::shared());
        QSignalSpy handedOver(&supervision, &SupervisionController::pendingActionsHandedOver);
        // As the platform reports it: through the application's own signal.
        const auto changeState = [](Qt::ApplicationState state) {
            QMetaObject::invokeMethod(qApp, "applicationStateChanged",
                                      Q_ARG(Qt::ApplicationState, state));
        };
        for (int round = 1; round <= 2; ++round) {
            for (Qt::ApplicationState state :
                 {Qt::ApplicationInactive, Qt::ApplicationHidden, Qt::ApplicationSuspended})
                changeState(state);
            QCOMPARE(handedOver.size(), round - 1);
            changeState(Qt::ApplicationActive);
            QCOMPARE(handedOver.size(), round); // one connection, so once
        }
    }

    void everyFocusableControlHasAnAccessibleName()
    {
        m_state->updateConnectionStatus(m_studio.id, true);
        const auto window = makeWindow();
        LogManager::shared().log(QStringLiteral("walk"), QStringLiteral("UI"));
        QStringList unnamed;
        QSet<QWidget *> reached;
        const auto check = [&](QWidget *root, const QString &view) {
            for (QWidget *widget : root->findChildren<QWidget *>()) {
                if (!widget->isVisibleTo(root) || !(widget->focusPolicy() & Qt::TabFocus))
                    continue;
                QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
                if (!accessible || accessible->text(QAccessible::Name).trimmed().isEmpty())
                    unnamed << view + QLatin1Char(':') + widget->metaObject()->className() +
                                   QLatin1Char(' ') + widget->objectName();
            }
        };
        const QList<NavigationItem> views = {
            NavigationItem::dashboard(), NavigationItem::computer(m_studio.id),
            NavigationItem::computer(m_lab.id), NavigationItem::logs()};
        for (const NavigationItem &item : views) {
            window->state()->select(item);
            QCoreApplication::processEvents();
            check(window.get(), QString::number(int(item.kind)));
            // Tab reaches the sidebar and the page and comes round again.
            window->activateWindow();
            window->sidebar()->dashboardRow()->setFocus();
            for (int i = 0; i < 200; ++i) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                reached.insert(QApplication::focusWidget());
                if (QApplication::focusWidget() == window->sidebar()->dashboardRow())
                    break;
            }
            QCOMPARE(QApplication::focusWidget(), window->sidebar()->dashboardRow());
        }
        window->showSettings();
        check(window->settingsWindow(), QStringLiteral("settings"));
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(QStringLiteral(", "))));
        for (QWidget *control : {static_cast<QWidget *>(window->sidebar()->computerList()),
                                 static_cast<QWidget *>(window->sidebar()->logsRow()),
                                 static_cast<QWidget *>(window->sidebar()->addButton()),
                                 static_cast<QWidget *>(window->logs()->copyAllButton()),
                                 static_cast<QWidget *>(window->logs()->clearButton())})
            QVERIFY(reached.contains(control));
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
