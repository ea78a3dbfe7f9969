#pragma once

#include <QMutex>
#include <QObject>
#include <functional>

// A way for other threads (provider workers, the console releasing a frame, an identity
// prompt) to run code on a QObject's thread without racing its destruction: the owner
// closes the mailbox in its destructor, and a post after that is dropped.
class ZEKTMailbox {
public:
    explicit ZEKTMailbox(QObject *target) : m_target(target) {}

    void close()
    {
        QMutexLocker locker(&m_lock);
        m_target = nullptr;
    }

    // Queues `work` to run on the target's thread; false when the target is gone. Posting
    // under the lock keeps the target alive until the event is queued, and Qt drops events
    // still queued for an object when it is destroyed.
    bool post(std::function<void()> work)
    {
        QMutexLocker locker(&m_lock);
        if (!m_target)
            return false;
        return QMetaObject::invokeMethod(m_target, std::move(work), Qt::QueuedConnection);
    }

private:
    QMutex m_lock;
    QObject *m_target;
};
