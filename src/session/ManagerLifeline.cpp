#include "ManagerLifeline.h"

#include "ZEKTManager.h"

void ManagerLifeline::sever()
{
    std::lock_guard lock(m_lock);
    m_manager = nullptr;
}

bool ManagerLifeline::isAlive() const
{
    std::lock_guard lock(m_lock);
    return m_manager != nullptr;
}

ZEKTManager *ManagerLifeline::managerOnItsThread() const
{
    std::lock_guard lock(m_lock);
    return m_manager;
}

bool ManagerLifeline::post(std::function<void(ZEKTManager &manager)> work)
{
    // Held while posting so the manager cannot be destroyed in between; the event queue
    // drops events of a destroyed receiver.
    std::lock_guard lock(m_lock);
    if (!m_manager)
        return false;
    ZEKTManager *manager = m_manager;
    QMetaObject::invokeMethod(
        manager, [manager, work = std::move(work)] { work(*manager); }, Qt::QueuedConnection);
    return true;
}
