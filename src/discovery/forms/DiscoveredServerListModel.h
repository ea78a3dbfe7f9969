#pragma once

#include "discovery/DiscoveredServer.h"

#include <QAbstractListModel>
#include <QList>

// The discovered servers a form shows, one row each. setServers() changes only the rows
// that come or go (by id), so a view keeps its current row and scroll position.
class DiscoveredServerListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        IdRole = Qt::UserRole + 1,
        AddressRole, // "host:port"; also the tool tip
    };

    using QAbstractListModel::QAbstractListModel;

    const QList<DiscoveredServer> &servers() const { return m_servers; }
    // `servers` keeps the relative order of the rows it shares with the current list.
    void setServers(const QList<DiscoveredServer> &servers);
    // The row of that id, -1 when none.
    int row(const QUuid &id) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    QList<DiscoveredServer> m_servers;
};
