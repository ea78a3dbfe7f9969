#pragma once

#include <QtCore/qnamespace.h>
#include <QtGlobal>
#include <optional>

class QKeyEvent;

// Turns a local key event into the macOS virtual key code and modifier-flag word the agent
// expects. Keys go by physical position: the X keycode (the event's native scan code) picks
// the key, so the remote layout decides the character typed; events without a scan code
// (synthesized, offscreen) fall back to the Qt key at its US-layout position.
class RemoteKeyTranslator {
public:
    struct Stroke {
        quint16 keyCode = 0;
        quint32 flags = 0;
        bool operator==(const Stroke &) const = default;
    };

    // X's Lock bit in the native modifier state: Caps Lock is on.
    static constexpr quint32 nativeCapsLockMask = 0x2;

    // None for a key without a macOS code: it sends nothing.
    static std::optional<Stroke> translate(const QKeyEvent &event);
    static std::optional<Stroke> translate(quint32 nativeScanCode, int qtKey,
                                           Qt::KeyboardModifiers modifiers,
                                           quint32 nativeModifiers);
    // Shift, Ctrl (control), Alt and AltGr (option), Super (command) and Caps Lock, with no
    // swapping of Ctrl and Super; the kind and device bits are not included.
    static quint32 modifierFlags(Qt::KeyboardModifiers modifiers, quint32 nativeModifiers);
    // Left 0, right 1, any other the index of its bit (middle 2, back 3, forward 4); none
    // for no button.
    static std::optional<int> buttonNumber(Qt::MouseButton button);
};
