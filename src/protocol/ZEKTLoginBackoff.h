#pragma once

#include <QHash>
#include <QString>

// Failed logins per source address: the first five are free, then the source waits the
// back-off base (10 s), doubled with every further failure up to the maximum (1 h). A
// success clears the source. Times are passed in so the rule is testable without clocks.
class ZEKTLoginBackoff {
public:
    static constexpr int freeFailures = 5;

    // Milliseconds the source must still wait before a login is checked; 0 when it may try.
    qint64 remainingMs(const QString &source, qint64 nowMs) const;
    void recordFailure(const QString &source, qint64 nowMs);
    void recordSuccess(const QString &source);

private:
    struct Entry {
        int failures = 0;
        qint64 blockedUntilMs = 0;
        qint64 lastFailureMs = 0;
    };
    void prune(qint64 nowMs);

    QHash<QString, Entry> m_entries;
};
