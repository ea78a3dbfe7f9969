#pragma once

#include <QByteArray>

#include <vector>

// Hands large buffers out again once every other holder (a hash worker, a file worker,
// the socket's write queue) has let go of them. A stream of megabyte chunks otherwise gets
// fresh pages from the kernel for each one: faulting and zeroing them costs about as much
// as the encryption. Used by one thread; the buffers may be released on any thread.
class ZEKTBufferRecycler {
public:
    // Buffers below this size come from the allocator's own free lists anyway.
    static constexpr qsizetype minimumSize = 64 * 1024;

    explicit ZEKTBufferRecycler(int capacity = 16) : m_capacity(capacity) {}

    // A buffer of `size` bytes that nobody else holds; its contents are undefined.
    QByteArray take(qsizetype size);
    // Remembers `buffer` (sharing it, not copying) for a later take(). When full, the
    // oldest is forgotten and freed by its last holder as usual.
    void keep(const QByteArray &buffer);
    // Forgets every buffer, so an idle session holds no spare memory.
    void clear() { m_kept.clear(); }
    qsizetype keptCount() const { return static_cast<qsizetype>(m_kept.size()); }

private:
    std::vector<QByteArray> m_kept;
    int m_capacity;
};
