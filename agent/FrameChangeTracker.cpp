#include "FrameChangeTracker.h"

bool FrameChangeTracker::update(quintptr streamKey, quint64 version)
{
    QMutexLocker lock(&m_mutex);
    const auto it = m_lastVersion.constFind(streamKey);
    if (it != m_lastVersion.constEnd() && it.value() == version)
        return false;
    m_lastVersion.insert(streamKey, version);
    return true;
}

void FrameChangeTracker::forget(quintptr streamKey)
{
    QMutexLocker lock(&m_mutex);
    m_lastVersion.remove(streamKey);
}
