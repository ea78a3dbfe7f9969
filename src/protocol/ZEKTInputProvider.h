#pragma once

#include <QString>
#include <optional>

// Injects input events; each returns a readable error when the event could not be
// delivered. Called on a worker thread in the order received; must be thread-safe.
class ZEKTInputProvider {
public:
    virtual ~ZEKTInputProvider() = default;
    virtual std::optional<QString> mouseButton(double x, double y, int button, bool pressed) = 0;
    virtual std::optional<QString> mouseMove(double x, double y, double deltaX, double deltaY) = 0;
    // keyCode: macOS virtual key code; modifiers: the macOS modifier-flag word.
    virtual std::optional<QString> key(quint16 keyCode, bool pressed, quint32 modifiers) = 0;
};
