#include "ComputerTableModel.h"

#include "state/AppState.h"

namespace {

// What a row shows; statistics and thumbnails change far more often and are not shown.
bool sameRow(const RemoteComputer &a, const RemoteComputer &b)
{
    return a.id == b.id && a.name == b.name && a.host == b.host && a.port == b.port &&
           a.isConnected == b.isConnected && a.isConnecting == b.isConnecting &&
           a.lastError == b.lastError;
}

} // namespace

ComputerTableModel::ComputerTableModel(AppState &appState, QObject *parent)
    : QAbstractTableModel(parent), m_appState(appState), m_rows(appState.computers())
{
    connect(&m_appState, &AppState::computersChanged, this, &ComputerTableModel::reload);
}

void ComputerTableModel::reload()
{
    const QList<RemoteComputer> &next = m_appState.computers();
    if (next.size() != m_rows.size()) {
        beginResetModel();
        m_rows = next;
        endResetModel();
        return;
    }
    // Same number of rows: tell the view only about the rows whose text changed.
    QList<int> changed;
    for (int row = 0; row < next.size(); ++row) {
        if (!sameRow(next.at(row), m_rows.at(row)))
            changed.append(row);
    }
    m_rows = next;
    for (int row : std::as_const(changed))
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

int ComputerTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int ComputerTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString ComputerTableModel::statusText(const RemoteComputer &computer)
{
    if (computer.isConnected)
        return tr("Connected");
    if (computer.isConnecting)
        return tr("Connecting");
    return tr("Disconnected");
}

QVariant ComputerTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const RemoteComputer &computer = m_rows.at(index.row());
    if (role == Qt::ToolTipRole && index.column() == LastErrorColumn)
        return computer.lastError.value_or(QString());
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case NameColumn:
        return computer.displayName();
    case AddressColumn:
        return computer.connectionString();
    case StatusColumn:
        return statusText(computer);
    case LastErrorColumn:
        return computer.lastError.value_or(QString());
    default:
        return {};
    }
}

QVariant ComputerTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case AddressColumn:
        return tr("Address");
    case StatusColumn:
        return tr("Status");
    case LastErrorColumn:
        return tr("Last Error");
    default:
        return {};
    }
}
