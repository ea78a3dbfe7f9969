#pragma once

#include "ZEKTInputProvider.h"

#include <QMutex>
#include <functional>

// Input of a simulated agent: every event is logged on one line and the last pointer
// position and key are kept for the simulated screen to draw.
class SimulatedInputProvider : public ZEKTInputProvider {
public:
    using LogFunction = std::function<void(const QString &line)>;
    struct Snapshot {
        bool hasPointer = false;
        double x = 0; // wire coordinates: origin at the bottom left
        double y = 0;
        QString lastKey; // "Return (shift)", empty before the first key
        quint64 eventCount = 0;
    };

    explicit SimulatedInputProvider(LogFunction log);

    std::optional<QString> mouseButton(double x, double y, int button, bool pressed) override;
    std::optional<QString> mouseMove(double x, double y, double deltaX, double deltaY) override;
    std::optional<QString> key(quint16 keyCode, bool pressed, quint32 modifiers) override;

    Snapshot snapshot() const;

private:
    // Records a pointer event at (x, y); false for a position that is not a number.
    bool notePointer(double x, double y);

    LogFunction m_log;
    mutable QMutex m_mutex; // guards m_state
    Snapshot m_state;
};
