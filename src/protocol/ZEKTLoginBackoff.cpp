#include "ZEKTLoginBackoff.h"

#include "ZEKT.h"

#include <cmath>

qint64 ZEKTLoginBackoff::remainingMs(const QString &source, qint64 nowMs) const
{
    const auto it = m_entries.constFind(source);
    if (it == m_entries.cend())
        return 0;
    return qMax<qint64>(0, it->blockedUntilMs - nowMs);
}

void ZEKTLoginBackoff::recordFailure(const QString &source, qint64 nowMs)
{
    prune(nowMs);
    Entry &entry = m_entries[source];
    ++entry.failures;
    entry.lastFailureMs = nowMs;
    if (entry.failures < freeFailures)
        return;
    const ZEKT::ProtocolTimings timings = ZEKT::protocolTimings();
    const int doublings = qMin(entry.failures - freeFailures, 30);
    const double waitSeconds =
        qMin(timings.backoffBase * std::ldexp(1.0, doublings), timings.backoffMax);
    entry.blockedUntilMs = nowMs + static_cast<qint64>(waitSeconds * 1000.0);
}

void ZEKTLoginBackoff::recordSuccess(const QString &source)
{
    m_entries.remove(source);
}

void ZEKTLoginBackoff::prune(qint64 nowMs)
{
    // Bounded memory under a scan from many addresses: forget sources quiet for a while.
    if (m_entries.size() < 4096)
        return;
    const qint64 keepMs = static_cast<qint64>(ZEKT::protocolTimings().backoffMax * 1000.0);
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        if (it->blockedUntilMs < nowMs && it->lastFailureMs + keepMs < nowMs)
            it = m_entries.erase(it);
        else
            ++it;
    }
}
