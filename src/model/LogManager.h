#pragma once

#include <QObject>
#include <QStringList>

// The in-app activity log: one-line entries "[time] [CATEGORY] message", kept in
// memory (at most maxLogs) and mirrored to standard output. log() and clearLogs() may
// be called from any thread; `logs` changes only on the application's main thread.
class LogManager : public QObject {
    Q_OBJECT

public:
    static constexpr int maxLogs = 5000;

    static LogManager &shared();

    void log(const QString &message, const QString &category);
    // Logs only the first time `logged` is false, and sets it: for what would repeat on
    // every press of a button (a missing seam, an unavailable window).
    void logOnce(bool &logged, const QString &message, const QString &category);
    void clearLogs();

    // Main thread only.
    const QStringList &logs() const { return m_logs; }

    // The entry text for a message logged now (exposed for the log viewer's tests).
    static QString formatEntry(const QString &message, const QString &category);

Q_SIGNALS:
    // Step by step, for views that insert and remove rows: entries put at the end, then
    // (when the list grew past maxLogs) that many dropped from the front, or everything
    // gone. logsChanged() follows each of these.
    void entriesAppended(const QStringList &entries);
    void oldestEntriesDropped(int count);
    void cleared();
    // The whole list changed in one step (append, trim or clear).
    void logsChanged();

private:
    LogManager();
    void append(const QString &entry);

    QStringList m_logs;
};
