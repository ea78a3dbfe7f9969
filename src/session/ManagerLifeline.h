#pragma once

#include <functional>
#include <mutex>

class ZEKTManager;

// Lets library threads reach the session manager safely: work posted here runs on the
// manager's thread, and is dropped once the manager is gone.
class ManagerLifeline {
public:
    explicit ManagerLifeline(ZEKTManager *manager) : m_manager(manager) {}

    // Called by the manager's destructor; afterwards nothing is posted.
    void sever();
    bool isAlive() const;
    // The manager itself; use only on the manager's own thread, where it cannot be
    // destroyed meanwhile. Null once it is gone.
    ZEKTManager *managerOnItsThread() const;
    // Queues `work` on the manager's thread; false when the manager is gone.
    bool post(std::function<void(ZEKTManager &manager)> work);

private:
    mutable std::mutex m_lock;
    ZEKTManager *m_manager;
};
