#include "MainWindow.h"

#include "state/AppState.h"
#include "ui/ComputerTableModel.h"

#include <QHeaderView>
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
}
