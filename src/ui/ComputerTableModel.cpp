#include "ComputerTableModel.h"

#include "state/ComputerListModel.h"

ComputerTableModel::ComputerTableModel(ComputerListModel &source, QObject *parent)
    : QAbstractTableModel(parent), m_source(source)
{
    connect(&source, &QAbstractItemModel::rowsAboutToBeInserted, this,
            [this](const QModelIndex &, int first, int last) { beginInsertRows({}, first, last); });
    connect(&source, &QAbstractItemModel::rowsInserted, this, [this] { endInsertRows(); });
    connect(&source, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex &, int first, int last) { beginRemoveRows({}, first, last); });
    connect(&source, &QAbstractItemModel::rowsRemoved, this, [this] { endRemoveRows(); });
    connect(&source, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&source, &QAbstractItemModel::modelReset, this, [this] { endResetModel(); });
    connect(&source, &QAbstractItemModel::dataChanged, this, &ComputerTableModel::sourceChanged);
}

void ComputerTableModel::sourceChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                       const QList<int> &roles)
{
    static const QList<int> shown{
        ComputerListModel::DisplayNameRole, ComputerListModel::AddressRole,
        ComputerListModel::IsConnectedRole, ComputerListModel::IsConnectingRole,
        ComputerListModel::LastErrorRole};
    if (!roles.isEmpty() &&
        std::none_of(roles.begin(), roles.end(), [](int role) { return shown.contains(role); }))
        return;
    Q_EMIT dataChanged(index(topLeft.row(), 0), index(bottomRight.row(), ColumnCount - 1));
}

int ComputerTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_source.rowCount();
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
    if (!index.isValid() || index.row() >= m_source.rowCount())
        return {};
    const RemoteComputer &computer = m_source.computerAt(index.row());
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
