#include "DiscoveredServerListModel.h"

#include <QSet>

void DiscoveredServerListModel::setServers(const QList<DiscoveredServer> &servers)
{
    QSet<QUuid> wanted;
    for (const DiscoveredServer &server : servers)
        wanted.insert(server.id());

    // Rows that go, from the back, a run at a time.
    for (int end = int(m_servers.size()); end > 0;) {
        if (wanted.contains(m_servers.at(end - 1).id())) {
            --end;
            continue;
        }
        int first = end - 1;
        while (first > 0 && !wanted.contains(m_servers.at(first - 1).id()))
            --first;
        beginRemoveRows({}, first, end - 1);
        m_servers.remove(first, end - first);
        endRemoveRows();
        end = first;
    }

    // What is left is in the new order already; rows that come fill the gaps.
    for (int row = 0; row < servers.size();) {
        if (row < m_servers.size() && m_servers.at(row).id() == servers.at(row).id()) {
            ++row;
            continue;
        }
        const QUuid next = row < m_servers.size() ? m_servers.at(row).id() : QUuid();
        int end = row;
        while (end < servers.size() && servers.at(end).id() != next)
            ++end;
        beginInsertRows({}, row, end - 1);
        for (int i = row; i < end; ++i)
            m_servers.insert(i, servers.at(i));
        endInsertRows();
        row = end;
    }
}

int DiscoveredServerListModel::row(const QUuid &id) const
{
    for (int i = 0; i < m_servers.size(); ++i) {
        if (m_servers.at(i).id() == id)
            return i;
    }
    return -1;
}

int DiscoveredServerListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_servers.size());
}

QVariant DiscoveredServerListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const DiscoveredServer &server = m_servers.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return server.displayText();
    case Qt::ToolTipRole:
    case AddressRole:
        return server.address();
    case Qt::AccessibleTextRole:
        return server.displayText() + QStringLiteral(", ") + server.address();
    case IdRole:
        return server.id();
    default:
        return {};
    }
}
