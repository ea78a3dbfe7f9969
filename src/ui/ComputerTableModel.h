#pragma once

#include "model/RemoteComputer.h"

#include <QAbstractTableModel>

class AppState;

// The stored computers as table rows: display name, host:port, status, last error.
class ComputerTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { NameColumn, AddressColumn, StatusColumn, LastErrorColumn, ColumnCount };

    explicit ComputerTableModel(AppState &appState, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    static QString statusText(const RemoteComputer &computer);

private:
    void reload();

    AppState &m_appState;
    QList<RemoteComputer> m_rows;
};
