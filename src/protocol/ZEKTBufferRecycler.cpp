#include "ZEKTBufferRecycler.h"

#include <atomic>

QByteArray ZEKTBufferRecycler::take(qsizetype size)
{
    for (auto it = m_kept.begin(); it != m_kept.end(); ++it) {
        if (!it->isDetached() || it->capacity() < size)
            continue;
        // The last other holder dropped its reference with a releasing decrement; this
        // fence orders its reads of the old contents before our writes of new ones.
        std::atomic_thread_fence(std::memory_order_acquire);
        QByteArray buffer = std::move(*it);
        m_kept.erase(it);
        buffer.resize(size); // within capacity and unshared: no allocation, no copy
        return buffer;
    }
    return QByteArray(size, Qt::Uninitialized);
}

void ZEKTBufferRecycler::keep(const QByteArray &buffer)
{
    if (buffer.capacity() < minimumSize || m_capacity <= 0)
        return;
    if (static_cast<int>(m_kept.size()) >= m_capacity)
        m_kept.erase(m_kept.begin());
    m_kept.push_back(buffer);
}
