#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <QTimer>

class LogManager;

// The in-app log as a list model, oldest entry first. It follows the log step by step:
// appended entries insert rows at the end, trimmed ones remove rows from the front and a
// clear removes every row, so a view keeps its place and never sees a reset. It keeps
// its own copy of the entries (shared strings, so nearly free) to stay consistent
// between the begin and end of each change. While the log streams, changes are gathered
// for a short interval and applied as one removal and one insertion, so a view lays out
// and paints a few times a second rather than once per entry.
class LogListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        EntryRole = Qt::UserRole + 1, // the entry as logged; also Qt::DisplayRole
        TimeRole,
        CategoryRole,
        MessageRole,
    };

    static constexpr int defaultBatchIntervalMs = 100;

    explicit LogListModel(LogManager &logManager, QObject *parent = nullptr,
                          int batchIntervalMs = defaultBatchIntervalMs);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // What "Copy All" puts on the clipboard: the entries joined by line feeds, no
    // trailing one.
    QString joinedText() const;
    // Applies the gathered changes now.
    void flush();

private:
    void append(const QStringList &entries);
    void dropOldest(int count);
    void clear();

    QStringList m_entries;
    QStringList m_pendingEntries;
    int m_pendingDrops = 0;
    QTimer m_batch;
};
