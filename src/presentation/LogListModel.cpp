#include "LogListModel.h"

#include "LogEntryRow.h"
#include "model/LogManager.h"

LogListModel::LogListModel(LogManager &logManager, QObject *parent)
    : QAbstractListModel(parent), m_entries(logManager.logs())
{
    connect(&logManager, &LogManager::entriesAppended, this, &LogListModel::append);
    connect(&logManager, &LogManager::oldestEntriesDropped, this, &LogListModel::dropOldest);
    connect(&logManager, &LogManager::cleared, this, &LogListModel::clear);
}

int LogListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant LogListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_entries.size())
        return {};
    const QString &entry = m_entries.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case EntryRole:
        return entry;
    case TimeRole:
        return LogEntryRow::parse(entry).time;
    case CategoryRole:
        return LogEntryRow::parse(entry).category;
    case MessageRole:
        return LogEntryRow::parse(entry).message;
    default:
        return {};
    }
}

QString LogListModel::joinedText() const
{
    return m_entries.join(QLatin1Char('\n'));
}

void LogListModel::append(const QStringList &entries)
{
    if (entries.isEmpty())
        return;
    const int first = int(m_entries.size());
    beginInsertRows({}, first, first + int(entries.size()) - 1);
    m_entries.append(entries);
    endInsertRows();
}

void LogListModel::dropOldest(int count)
{
    count = std::min(count, int(m_entries.size()));
    if (count <= 0)
        return;
    beginRemoveRows({}, 0, count - 1);
    m_entries.remove(0, count);
    endRemoveRows();
}

void LogListModel::clear()
{
    if (m_entries.isEmpty())
        return;
    beginRemoveRows({}, 0, int(m_entries.size()) - 1);
    m_entries.clear();
    endRemoveRows();
}
