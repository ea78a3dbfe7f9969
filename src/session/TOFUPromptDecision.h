#pragma once

#include <mutex>
#include <optional>

// The one answer of one server-identity prompt, shared between the waiting library thread,
// the alert on the main thread and the two time-outs. The first writer wins.
class TOFUPromptDecision {
public:
    // Stores the value if none is stored yet; true when this call stored it.
    bool decide(bool trust);
    std::optional<bool> storedValue() const;

private:
    mutable std::mutex m_lock;
    std::optional<bool> m_storedValue;
};
