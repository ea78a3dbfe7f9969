#include "SimulatedInputProvider.h"

#include "input/MacKeyCodeTable.h"

#include <cmath>

SimulatedInputProvider::SimulatedInputProvider(LogFunction log) : m_log(std::move(log)) {}

bool SimulatedInputProvider::notePointer(double x, double y)
{
    if (!std::isfinite(x) || !std::isfinite(y))
        return false;
    QMutexLocker lock(&m_mutex);
    m_state.hasPointer = true;
    m_state.x = x;
    m_state.y = y;
    ++m_state.eventCount;
    return true;
}

std::optional<QString> SimulatedInputProvider::mouseButton(double x, double y, int button,
                                                           bool pressed)
{
    if (!notePointer(x, y))
        return QStringLiteral("Invalid pointer position");
    m_log(QStringLiteral("input: mouse button %1 %2 at (%3, %4)")
              .arg(button)
              .arg(pressed ? QStringLiteral("down") : QStringLiteral("up"))
              .arg(x)
              .arg(y));
    return std::nullopt;
}

std::optional<QString> SimulatedInputProvider::mouseMove(double x, double y, double deltaX,
                                                         double deltaY)
{
    if (!notePointer(x, y))
        return QStringLiteral("Invalid pointer position");
    m_log(QStringLiteral("input: mouse move to (%1, %2) delta (%3, %4)")
              .arg(x)
              .arg(y)
              .arg(deltaX)
              .arg(deltaY));
    return std::nullopt;
}

std::optional<QString> SimulatedInputProvider::key(quint16 keyCode, bool pressed, quint32 modifiers)
{
    QString name = MacKeyCodeTable::keyName(keyCode);
    if (const QString mods = MacKeyCodeTable::modifiersText(modifiers); !mods.isEmpty())
        name += QStringLiteral(" (") + mods + QLatin1Char(')');
    {
        QMutexLocker lock(&m_mutex);
        if (pressed)
            m_state.lastKey = name;
        ++m_state.eventCount;
    }
    // The whole flag word, kind and device bits included, so tests see what was sent.
    m_log(QStringLiteral("input: key %1 code %2 %3 flags 0x%4")
              .arg(name)
              .arg(keyCode)
              .arg(pressed ? QStringLiteral("down") : QStringLiteral("up"))
              .arg(modifiers, 0, 16));
    return std::nullopt;
}

SimulatedInputProvider::Snapshot SimulatedInputProvider::snapshot() const
{
    QMutexLocker lock(&m_mutex);
    return m_state;
}
