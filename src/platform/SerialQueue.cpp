#include "SerialQueue.h"

#include <pthread.h>

SerialQueue::SerialQueue(QString label) : m_label(std::move(label))
{
    m_thread = std::thread([this] { run(); });
    // Thread names are limited to 15 bytes; the tail of the label is the telling part.
    const QByteArray name = m_label.right(15).toUtf8();
    pthread_setname_np(m_thread.native_handle(), name.constData());
}

SerialQueue::~SerialQueue()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void SerialQueue::enqueue(std::function<void()> task)
{
    {
        std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
}

void SerialQueue::waitUntilIdle()
{
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, [this] { return m_tasks.empty() && !m_running; });
}

void SerialQueue::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_stopping || !m_tasks.empty(); });
        if (m_tasks.empty()) {
            if (m_stopping)
                return;
            continue;
        }
        std::function<void()> task = std::move(m_tasks.front());
        m_tasks.pop_front();
        m_running = true;
        lock.unlock();
        task();
        lock.lock();
        m_running = false;
        if (m_tasks.empty())
            m_idle.notify_all();
    }
}
