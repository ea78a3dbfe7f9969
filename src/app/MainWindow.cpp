#include "MainWindow.h"

#include "ConsoleShutdown.h"
#include "HelpMenu.h"
#include "LaunchAnimationPresenter.h"
#include "model/LogManager.h"
#include "platform/SettingsFiles.h"
#include "presentation/WindowPlacement.h"
#include "state/AppState.h"
#include "state/MainWindowState.h"
#include "ui/ComputerDetailView.h"
#include "ui/ComputerFormFactory.h"
#include "ui/ComputerListView.h"
#include "ui/DashboardView.h"
#include "ui/LogsView.h"
#include "ui/SettingsView.h"

#include <QCloseEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>

namespace {

const QString geometryKey = QStringLiteral("MainWindow/geometry");

} // namespace

MainWindow::MainWindow(AppState &appState, QWidget *parent, ComputerFormFactory *formFactory,
                       RemoteControlWindowFactory *remoteControlFactory, AlertPresenter *alerts)
    : QMainWindow(parent), m_appState(appState), m_actions(appState), m_formFactory(formFactory),
      m_remoteControlFactory(remoteControlFactory),
      m_state(new MainWindowState(appState, alerts, this)),
      m_sidebar(new ComputerListView(appState, this)), m_pages(new QStackedWidget(this)),
      m_dashboard(new DashboardView(appState, this)),
      m_logs(new LogsView(LogManager::shared(), this))
{
    setWindowTitle(tr("Telvane"));
    m_sidebar->setFixedWidth(sidebarWidth);
    m_pages->addWidget(m_dashboard);
    m_pages->addWidget(m_logs);
    auto *divider = new QFrame(this);
    divider->setFrameShape(QFrame::VLine);
    divider->setFrameShadow(QFrame::Sunken);
    auto *central = new QWidget(this);
    auto *layout = new QHBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_sidebar);
    layout->addWidget(divider);
    layout->addWidget(m_pages, 1);
    setCentralWidget(central);

    // File first: the menus that come later are appended after it.
    QMenu *file = menuBar()->addMenu(tr("&File"));
    QAction *settings = file->addAction(tr("Settings..."), this, &MainWindow::showSettings);
    settings->setShortcut(QKeySequence(tr("Ctrl+,")));
    settings->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    QAction *quit = file->addAction(tr("Quit"), this, [] { ConsoleShutdown::quit(); });
    quit->setShortcut(QKeySequence(tr("Ctrl+Q")));
    quit->setMenuRole(QAction::QuitRole);
    // Their shortcuts work wherever the focus is in the window.
    addActions({settings, quit});
    m_helpMenu = new HelpMenu(menuBar()->addMenu(tr("&Help")));
    m_launchAnimation = new LaunchAnimationPresenter(this);

    connect(m_state, &MainWindowState::selectedItemChanged, this, &MainWindow::showSelection);
    connect(m_state, &MainWindowState::isAppReadyChanged, this, &MainWindow::isAppReadyChanged);
    connect(m_state, &MainWindowState::isAppReadyChanged, m_launchAnimation,
            &LaunchAnimationPresenter::setAppReady);
    connect(m_sidebar, &ComputerListView::itemChosen, m_state, &MainWindowState::select);
    connect(m_sidebar, &ComputerListView::addRequested, this, &MainWindow::openAddForm);
    connect(m_sidebar, &ComputerListView::editRequested, this, &MainWindow::openEditForm);
    connect(m_sidebar, &ComputerListView::deleteRequested, m_state,
            &MainWindowState::requestDelete);
    connect(m_dashboard, &DashboardView::computerSelected, this,
            [this](const QUuid &id) { m_state->select(NavigationItem::computer(id)); });

    setMinimumSize(800, 600);
    restorePlacement();
}

MainWindow::~MainWindow() = default;

void MainWindow::appear()
{
    m_state->appear();
}

bool MainWindow::isAppReady() const
{
    return m_state->isAppReady();
}

SettingsView *MainWindow::settingsWindow() const
{
    return m_settings;
}

QWidget *MainWindow::currentPage() const
{
    return m_pages->currentWidget();
}

void MainWindow::showSelection()
{
    const NavigationItem item = m_state->selectedItem().value_or(NavigationItem::dashboard());
    m_sidebar->setSelectedItem(item);
    if (item.kind != NavigationItem::Kind::computer && m_detail) {
        m_detail->deleteLater();
        m_detail = nullptr;
    }
    switch (item.kind) {
    case NavigationItem::Kind::dashboard:
        m_pages->setCurrentWidget(m_dashboard);
        break;
    case NavigationItem::Kind::logs:
        m_pages->setCurrentWidget(m_logs);
        break;
    case NavigationItem::Kind::computer:
        showComputer(item.computerId);
        break;
    }
}

void MainWindow::showComputer(const QUuid &id)
{
    if (m_detail && m_detail->computerId() == id) {
        m_pages->setCurrentWidget(m_detail);
        return;
    }
    if (m_detail)
        m_detail->deleteLater();
    m_detail = new ComputerDetailView(m_appState, id, m_formFactory, m_remoteControlFactory, this);
    connect(m_detail, &ComputerDetailView::connectRequested, this,
            [this](const QUuid &computer) { m_actions.connectComputer(computer); });
    connect(m_detail, &ComputerDetailView::disconnectRequested, this,
            [this](const QUuid &computer) { m_actions.disconnectComputer(computer); });
    connect(m_detail, &ComputerDetailView::previewRequested, this,
            [this](const QUuid &computer) { m_actions.requestPreview(computer); });
    connect(
        m_detail, &ComputerDetailView::fileTransferRequested, this,
        [this](const QUuid &computer, const QString &path) { m_actions.sendFile(computer, path); });
    connect(m_detail, &ComputerDetailView::cancelFileTransferRequested, this,
            [this] { m_actions.cancelFileTransfer(); });
    // The detail asked first; the selection then follows the list change.
    connect(m_detail, &ComputerDetailView::removeRequested, this,
            [this](const QUuid &computer) { m_actions.removeComputer(computer); });
    m_pages->addWidget(m_detail);
    m_pages->setCurrentWidget(m_detail);
}

void MainWindow::showSettings()
{
    if (!m_settings) {
        m_settings = new SettingsView(this);
        m_settings->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_settings->show();
    m_settings->raise();
    m_settings->activateWindow();
}

void MainWindow::openAddForm()
{
    static bool logged = false;
    if (!m_formFactory) {
        LogManager::shared().logOnce(
            logged, QStringLiteral("Adding computers is not available in this build"),
            QStringLiteral("UI"));
        return;
    }
    m_formFactory->openAddForm(this);
}

void MainWindow::openEditForm(const QUuid &id)
{
    static bool logged = false;
    if (!m_formFactory) {
        LogManager::shared().logOnce(
            logged, QStringLiteral("Editing computers is not available in this build"),
            QStringLiteral("UI"));
        return;
    }
    if (m_appState.computer(id))
        m_formFactory->openEditForm(id, this);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    savePlacement();
    // The settings belong to this window; remote-control windows live on by themselves.
    if (m_settings)
        m_settings->close();
    event->accept();
}

void MainWindow::restorePlacement()
{
    const QByteArray stored = SettingsFiles::openStandard()->value(geometryKey).toByteArray();
    if (stored.isEmpty() || !restoreGeometry(stored)) {
        resize(1000, 700);
        return;
    }
    QList<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.append(screen->availableGeometry());
    const QScreen *primary = QGuiApplication::primaryScreen();
    if (!primary)
        return;
    const QRect placed = WindowPlacement::onVisibleScreen(
        geometry(), screens, primary->availableGeometry(), minimumSize());
    if (placed != geometry())
        setGeometry(placed);
}

void MainWindow::savePlacement() const
{
    const std::unique_ptr<QSettings> settings = SettingsFiles::openStandard();
    settings->setValue(geometryKey, saveGeometry());
    SettingsFiles::syncDurably(*settings);
}
