#pragma once

#include "X11Connection.h"
#include "ZEKTInputProvider.h"

#include <QMutex>

// Injects pointer and key events into the X11 display through XTest. Coordinates arrive
// with the origin at the bottom left and are flipped to X's top-left origin.
class X11InputProvider : public ZEKTInputProvider {
public:
    // Wire button → X button: 0 left → 1, 1 right → 3, 2 middle → 2, n ≥ 3 → n + 5
    // (X buttons 4–7 are the wheel). 0 for a negative button.
    static quint8 xButton(int button);
    // Wire point → X pixel, clamped to the screen.
    static void toXPoint(double x, double y, int width, int height, int &outX, int &outY);

    std::optional<QString> mouseButton(double x, double y, int button, bool pressed) override;
    std::optional<QString> mouseMove(double x, double y, double deltaX, double deltaY) override;
    std::optional<QString> key(quint16 keyCode, bool pressed, quint32 modifiers) override;

private:
    std::optional<QString> ready();
    std::optional<QString> fake(quint8 type, quint8 detail, int x = 0, int y = 0);
    std::optional<QString> moveTo(double x, double y);

    QMutex m_mutex; // one event at a time, in order
    X11Connection m_x;
};
