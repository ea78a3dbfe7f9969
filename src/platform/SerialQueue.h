#pragma once

#include <QString>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

// One background thread that runs tasks in the order they were enqueued.
// The destructor runs what is still queued before it returns, so no write is lost.
class SerialQueue {
public:
    explicit SerialQueue(QString label);
    ~SerialQueue();

    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    const QString &label() const { return m_label; }
    void enqueue(std::function<void()> task);
    // Blocks until every task enqueued before the call has run. Tests and shutdown only.
    void waitUntilIdle();

private:
    void run();

    QString m_label;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::deque<std::function<void()>> m_tasks;
    bool m_running = false;
    bool m_stopping = false;
    std::thread m_thread;
};
