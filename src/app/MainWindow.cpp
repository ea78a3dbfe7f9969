#include "MainWindow.h"

#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"
#include "state/ComputerListModel.h"
#include "ui/ComputerTableModel.h"

#include <QAction>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMenuBar>
#include <QTableView>
#include <QToolBar>

MainWindow::MainWindow(AppState &appState, QWidget *parent)
    : QMainWindow(parent), m_appState(appState),
      m_model(new ComputerTableModel(*new ComputerListModel(appState, this), this)),
      m_table(new QTableView(this))
{
    setWindowTitle(tr("Telvane"));
    m_table->setModel(m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->setAlternatingRowColors(true);
    m_table->setColumnWidth(ComputerTableModel::NameColumn, 220);
    m_table->setColumnWidth(ComputerTableModel::AddressColumn, 200);
    m_table->setColumnWidth(ComputerTableModel::StatusColumn, 120);
    setCentralWidget(m_table);

    QToolBar *toolbar = addToolBar(tr("Computer"));
    toolbar->setObjectName(QStringLiteral("computerToolbar"));
    toolbar->setMovable(false);
    m_connectAction = toolbar->addAction(tr("Connect"), this, &MainWindow::connectSelected);
    m_disconnectAction =
        toolbar->addAction(tr("Disconnect"), this, &MainWindow::disconnectSelected);
    m_previewAction = toolbar->addAction(tr("Refresh Preview"), this, &MainWindow::previewSelected);

    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::updateActions);
    connect(&m_appState, &AppState::computersChanged, this, &MainWindow::updateActions);
    updateActions();
    resize(900, 520);

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
}

std::optional<QUuid> MainWindow::selectedComputerId() const
{
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    if (rows.isEmpty() || rows.first().row() >= m_appState.computers().size())
        return std::nullopt;
    return m_appState.computers().at(rows.first().row()).id;
}

void MainWindow::updateActions()
{
    const auto id = selectedComputerId();
    const auto computer = id ? m_appState.computer(*id) : std::nullopt;
    m_connectAction->setEnabled(computer && !computer->isConnected && !computer->isConnecting);
    m_disconnectAction->setEnabled(computer && (computer->isConnected || computer->isConnecting));
    m_previewAction->setEnabled(computer && computer->isConnected);
}

void MainWindow::connectSelected()
{
    if (const auto id = selectedComputerId(); id) {
        if (const auto computer = m_appState.computer(*id))
            m_appState.zektManager().connectToComputer(*computer);
    }
}

void MainWindow::disconnectSelected()
{
    if (const auto id = selectedComputerId(); id) {
        if (const auto computer = m_appState.computer(*id))
            m_appState.zektManager().disconnectFromComputer(*computer);
    }
}

void MainWindow::previewSelected()
{
    if (const auto id = selectedComputerId(); id) {
        if (const auto computer = m_appState.computer(*id))
            m_appState.zektManager().requestManualPreview(*computer);
    }
}
