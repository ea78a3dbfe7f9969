#include "ComputerListModel.h"

#include "AppState.h"

ComputerListModel::ComputerListModel(AppState &appState, QObject *parent)
    : QAbstractListModel(parent), m_appState(appState), m_rows(appState.computers())
{
    connect(&appState, &AppState::computerAdded, this, &ComputerListModel::added);
    connect(&appState, &AppState::computerRemoved, this, &ComputerListModel::removed);
    connect(&appState, &AppState::computerChanged, this, &ComputerListModel::changed);
}

int ComputerListModel::row(const QUuid &id) const
{
    for (int i = 0; i < m_rows.size(); ++i) {
        if (m_rows.at(i).id == id)
            return i;
    }
    return -1;
}

void ComputerListModel::added(const QUuid &id, int row)
{
    const QList<RemoteComputer> &computers = m_appState.computers();
    if (row < 0 || row >= computers.size() || row > m_rows.size() || computers.at(row).id != id)
        return;
    beginInsertRows({}, row, row);
    m_rows.insert(row, computers.at(row));
    endInsertRows();
}

void ComputerListModel::removed(const QUuid &id)
{
    for (int i = int(m_rows.size()) - 1; i >= 0; --i) {
        if (m_rows.at(i).id != id)
            continue;
        beginRemoveRows({}, i, i);
        m_rows.removeAt(i);
        endRemoveRows();
    }
}

void ComputerListModel::changed(const QUuid &id, ComputerFields fields)
{
    const int i = row(id);
    const std::optional<RemoteComputer> record = m_appState.computer(id);
    if (i < 0 || !record)
        return;
    m_rows[i] = *record;
    const QModelIndex at = index(i);
    Q_EMIT dataChanged(at, at, rolesFor(fields));
}

QList<int> ComputerListModel::rolesFor(ComputerFields fields)
{
    QList<int> roles;
    const auto add = [&](ComputerField field, std::initializer_list<int> affected) {
        if (!fields.testFlag(field))
            return;
        for (int role : affected) {
            if (!roles.contains(role))
                roles.append(role);
        }
    };
    add(ComputerField::name, {Qt::DisplayRole, DisplayNameRole, NameRole});
    add(ComputerField::host, {Qt::DisplayRole, DisplayNameRole, HostRole, AddressRole});
    add(ComputerField::port, {PortRole, AddressRole});
    add(ComputerField::description, {DescriptionRole});
    add(ComputerField::tags, {TagsRole});
    add(ComputerField::isConnected, {IsConnectedRole});
    add(ComputerField::isConnecting, {IsConnectingRole});
    add(ComputerField::lastConnected, {LastConnectedRole});
    add(ComputerField::thumbnailImage, {ThumbnailRole});
    add(ComputerField::lastError, {LastErrorRole});
    add(ComputerField::systemStats, {SystemStatsRole});
    if (fields)
        roles.append(RecordRole); // credentials have no role of their own
    return roles;
}

int ComputerListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant ComputerListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const RemoteComputer &computer = m_rows.at(index.row());
    const auto optional = [](const auto &value) {
        return value ? QVariant::fromValue(*value) : QVariant();
    };
    switch (role) {
    case Qt::DisplayRole:
    case DisplayNameRole:
        return computer.displayName();
    case IdRole:
        return computer.id;
    case NameRole:
        return computer.name.value_or(QString());
    case HostRole:
        return computer.host;
    case PortRole:
        return computer.port;
    case AddressRole:
        return computer.connectionString();
    case DescriptionRole:
        return computer.description.value_or(QString());
    case TagsRole:
        return computer.tags;
    case IsConnectedRole:
        return computer.isConnected;
    case IsConnectingRole:
        return computer.isConnecting;
    case LastConnectedRole:
        return optional(computer.lastConnected);
    case LastErrorRole:
        return optional(computer.lastError);
    case ThumbnailRole:
        return optional(computer.thumbnailImage);
    case SystemStatsRole:
        return optional(computer.systemStats);
    case RecordRole:
        return QVariant::fromValue(computer);
    default:
        return {};
    }
}

QHash<int, QByteArray> ComputerListModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert({{IdRole, "id"},
                  {DisplayNameRole, "displayName"},
                  {NameRole, "name"},
                  {HostRole, "host"},
                  {PortRole, "port"},
                  {AddressRole, "address"},
                  {DescriptionRole, "description"},
                  {TagsRole, "tags"},
                  {IsConnectedRole, "isConnected"},
                  {IsConnectingRole, "isConnecting"},
                  {LastConnectedRole, "lastConnected"},
                  {LastErrorRole, "lastError"},
                  {ThumbnailRole, "thumbnail"},
                  {SystemStatsRole, "systemStats"},
                  {RecordRole, "record"}});
    return names;
}
