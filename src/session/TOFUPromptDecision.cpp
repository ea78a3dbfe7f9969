#include "TOFUPromptDecision.h"

bool TOFUPromptDecision::decide(bool trust)
{
    std::lock_guard lock(m_lock);
    if (m_storedValue)
        return false;
    m_storedValue = trust;
    return true;
}

std::optional<bool> TOFUPromptDecision::storedValue() const
{
    std::lock_guard lock(m_lock);
    return m_storedValue;
}
