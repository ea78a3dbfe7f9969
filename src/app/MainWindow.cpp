#include "MainWindow.h"

#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "ui/ComputerTableModel.h"

#include <QAction>
#include <QHeaderView>
#include <QMenuBar>
#include <QTableView>

MainWindow::MainWindow(AppState &appState, QWidget *parent)
    : QMainWindow(parent), m_appState(appState), m_model(new ComputerTableModel(appState, this)),
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
