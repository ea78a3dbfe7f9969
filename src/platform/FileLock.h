#pragma once

#include <QDeadlineTimer>
#include <QString>

// An exclusive flock on a file, polled until a deadline. The kernel drops it when its
// holder dies, so a killed process never leaves a stale lock behind. Two FileLocks on the
// same path exclude each other even within one process.
class FileLock {
public:
    // Creates the file (mode 0600) when missing; isLocked() tells whether the lock was
    // taken before the deadline.
    FileLock(const QString &path, const QDeadlineTimer &deadline);
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    bool isLocked() const { return m_fd >= 0; }
    void release();

private:
    int m_fd;
};
