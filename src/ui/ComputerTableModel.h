#pragma once

#include "model/RemoteComputer.h"

#include <QAbstractTableModel>

class ComputerListModel;

// The computer list as table columns (display name, host:port, status, last error) over
// the list model: rows are inserted, removed and changed as the list model's are, and a
// change that alters none of these columns (statistics, thumbnails) is not passed on.
class ComputerTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { NameColumn, AddressColumn, StatusColumn, LastErrorColumn, ColumnCount };

    explicit ComputerTableModel(ComputerListModel &source, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    static QString statusText(const RemoteComputer &computer);

private:
    void sourceChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                       const QList<int> &roles);

    ComputerListModel &m_source;
};
