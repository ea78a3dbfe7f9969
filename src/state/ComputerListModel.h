#pragma once

#include "model/ComputerFields.h"
#include "model/RemoteComputer.h"

#include <QAbstractListModel>
#include <QList>
#include <QUuid>

class AppState;

// The computer list as a Qt item model, one row per computer in list order. It follows
// AppState's per-computer announcements, so an added or removed computer inserts or
// removes its row and a change (a statistics report, a status) touches that row alone,
// with the roles of the fields that changed.
class ComputerListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        IdRole = Qt::UserRole + 1,
        DisplayNameRole, // name, else host; also Qt::DisplayRole
        NameRole,        // the name, empty when none
        HostRole,
        PortRole,
        AddressRole, // "host:port"
        DescriptionRole,
        TagsRole,
        IsConnectedRole,
        IsConnectingRole,
        LastConnectedRole, // QDateTime, null when never
        LastErrorRole,     // null when none, which differs from an empty error
        ThumbnailRole,     // the encoded image, null when none
        SystemStatsRole,   // SystemStats, null when none
        RecordRole,        // the whole RemoteComputer
    };

    explicit ComputerListModel(AppState &appState, QObject *parent = nullptr);

    // The first row of that computer, -1 when it has none.
    int row(const QUuid &id) const;
    const RemoteComputer &computerAt(int row) const { return m_rows.at(row); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    // The roles whose values a change of these fields can alter.
    static QList<int> rolesFor(ComputerFields fields);

private:
    void added(const QUuid &id, int row);
    void removed(const QUuid &id);
    void changed(const QUuid &id, ComputerFields fields);

    AppState &m_appState;
    // The model's own copy, so rows change only between the model's begin and end calls.
    QList<RemoteComputer> m_rows;
};
