#include "MainWindow.h"

#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "ui/ComputerCardView.h"
#include "ui/ComputerDetailView.h"
#include "ui/DashboardView.h"
#include "ui/SymbolIcon.h"

#include <QAction>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolBar>

MainWindow::MainWindow(AppState &appState, QWidget *parent, ComputerFormFactory *formFactory,
                       RemoteControlWindowFactory *remoteControlFactory)
    : QMainWindow(parent), m_appState(appState), m_actions(appState), m_formFactory(formFactory),
      m_remoteControlFactory(remoteControlFactory), m_pages(new QStackedWidget(this)),
      m_dashboard(new DashboardView(appState, this))
{
    setWindowTitle(tr("Telvane"));
    m_pages->addWidget(m_dashboard);
    setCentralWidget(m_pages);
    connect(m_dashboard, &DashboardView::computerSelected, this, &MainWindow::showComputer);

    QToolBar *toolbar = addToolBar(tr("Navigation"));
    toolbar->setObjectName(QStringLiteral("navigationToolbar"));
    toolbar->setMovable(false);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_dashboardAction = new QAction(SymbolIcon::icon(u"house"), tr("Dashboard"), this);
    m_dashboardAction->setShortcut(QKeySequence::Back);
    m_dashboardAction->setEnabled(false);
    connect(m_dashboardAction, &QAction::triggered, this, &MainWindow::showDashboard);
    toolbar->addAction(m_dashboardAction);
    menuBar()->addMenu(tr("&View"))->addAction(m_dashboardAction);

    // A computer that is removed while its detail shows leaves the dashboard showing.
    connect(&appState, &AppState::computerRemoved, this, [this](const QUuid &id) {
        if (m_detail && m_detail->computerId() == id)
            showDashboard();
    });

    // Background supervision, bound both ways to its preference.
    const QString key = QLatin1String(PreferenceKeys::supervisionAutoConnectAll);
    QAction *keepConnected =
        menuBar()->addMenu(tr("&Computers"))->addAction(tr("Keep All Computers Connected"));
    keepConnected->setCheckable(true);
    keepConnected->setChecked(Preferences::shared().boolValue(key));
    connect(keepConnected, &QAction::toggled, this,
            [key](bool isOn) { Preferences::shared().setBoolValue(key, isOn); });
    connect(&Preferences::shared(), &Preferences::changed, keepConnected,
            [key, keepConnected](const QString &changed) {
                if (changed == key)
                    keepConnected->setChecked(Preferences::shared().boolValue(key));
            });

    setMinimumSize(800, 600);
    resize(1000, 700);
}

void MainWindow::showDashboard()
{
    m_pages->setCurrentWidget(m_dashboard);
    m_dashboardAction->setEnabled(false);
    if (!m_detail)
        return;
    // Back on the card that was chosen, so the keyboard carries on from there.
    for (ComputerCardView *card : m_dashboard->cards()) {
        if (card->computerId() == m_detail->computerId())
            card->setFocus();
    }
    m_detail->deleteLater();
    m_detail = nullptr;
}

void MainWindow::showComputer(const QUuid &id)
{
    if (!m_appState.computer(id))
        return;
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
    connect(m_detail, &ComputerDetailView::removeRequested, this,
            [this](const QUuid &computer) { m_actions.removeComputer(computer); });
    m_pages->addWidget(m_detail);
    m_pages->setCurrentWidget(m_detail);
    m_dashboardAction->setEnabled(true);
    for (QPushButton *button : m_detail->actionButtons()) {
        if (button->isEnabled()) {
            button->setFocus();
            break;
        }
    }
}
