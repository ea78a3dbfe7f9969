#include "LogListModel.h"

#include "LogEntryRow.h"
#include "model/LogManager.h"

LogListModel::LogListModel(LogManager &logManager, QObject *parent, int batchIntervalMs)
    : QAbstractListModel(parent), m_entries(logManager.logs())
{
    m_batch.setSingleShot(true);
    m_batch.setInterval(batchIntervalMs);
    connect(&m_batch, &QTimer::timeout, this, &LogListModel::flush);
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
    m_pendingEntries.append(entries);
    if (!m_batch.isActive())
        m_batch.start();
}

void LogListModel::dropOldest(int count)
{
    m_pendingDrops += std::max(count, 0);
    if (!m_batch.isActive())
        m_batch.start();
}

void LogListModel::flush()
{
    m_batch.stop();
    // Drops apply to the oldest entries: the shown ones first, then gathered ones.
    const int shownDrops = std::min(m_pendingDrops, int(m_entries.size()));
    if (shownDrops > 0) {
        beginRemoveRows({}, 0, shownDrops - 1);
        m_entries.remove(0, shownDrops);
        endRemoveRows();
    }
    m_pendingEntries.remove(
        0, std::min<qsizetype>(m_pendingDrops - shownDrops, m_pendingEntries.size()));
    m_pendingDrops = 0;
    if (m_pendingEntries.isEmpty())
        return;
    const int first = int(m_entries.size());
    beginInsertRows({}, first, first + int(m_pendingEntries.size()) - 1);
    m_entries.append(std::exchange(m_pendingEntries, {}));
    endInsertRows();
}

void LogListModel::clear()
{
    m_batch.stop();
    m_pendingEntries.clear();
    m_pendingDrops = 0;
    if (m_entries.isEmpty())
        return;
    beginRemoveRows({}, 0, int(m_entries.size()) - 1);
    m_entries.clear();
    endRemoveRows();
}
