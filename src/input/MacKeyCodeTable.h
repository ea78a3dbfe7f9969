#pragma once

#include <QString>
#include <QtCore/qnamespace.h>
#include <QtGlobal>
#include <optional>

// Translates between the macOS virtual key codes and modifier-flag word used on the wire
// and the physical Linux key codes (evdev; an X keycode is evdev + 8). Keys are
// identified by position, so the remote keyboard layout decides the character typed.
class MacKeyCodeTable {
public:
    // Bits of the modifier-flag word.
    static constexpr quint32 capsLockFlag = 0x10000;
    static constexpr quint32 shiftFlag = 0x20000;
    static constexpr quint32 controlFlag = 0x40000;
    static constexpr quint32 optionFlag = 0x80000;
    static constexpr quint32 commandFlag = 0x100000;
    static constexpr quint32 modifierMask =
        capsLockFlag | shiftFlag | controlFlag | optionFlag | commandFlag;
    // Bits that say what kind of key it is, not which modifier is down; modifiersFromFlags
    // ignores them, as it ignores the low 16 device bits.
    static constexpr quint32 numericPadFlag = 0x200000;
    static constexpr quint32 helpFlag = 0x400000;
    static constexpr quint32 functionFlag = 0x800000;

    // A few codes the agent and the console name directly.
    static constexpr quint16 kVKReturn = 0x24;
    static constexpr quint16 kVKBackspace = 0x33;
    static constexpr quint16 kVKEscape = 0x35;
    static constexpr quint16 kVKCommand = 0x37;
    static constexpr quint16 kVKShift = 0x38;
    static constexpr quint16 kVKCapsLock = 0x39;
    static constexpr quint16 kVKOption = 0x3A;
    static constexpr quint16 kVKControl = 0x3B;
    static constexpr quint16 kVKForwardDelete = 0x75;

    struct Modifiers {
        bool capsLock = false;
        bool shift = false;
        bool control = false;
        bool option = false;
        bool command = false;
        bool operator==(const Modifiers &) const = default;
    };

    static std::optional<quint16> evdevFromMac(quint16 macKeyCode);
    static std::optional<quint16> macFromEvdev(quint16 evdevCode);
    // X keycodes stop at 255, so a few evdev keys have none.
    static std::optional<quint8> xKeycodeFromMac(quint16 macKeyCode);
    static std::optional<quint16> macFromXKeycode(quint32 xKeycode);
    // The key at the US-layout position of a Qt key, for events that carry no scan code
    // (synthesized ones, the offscreen platform). `keypad` picks the numeric-pad twin of
    // digits, operators and Enter.
    static std::optional<quint16> macFromQtKey(int qtKey, bool keypad);
    // The kind bits a key carries in the flag word: numeric pad for keypad keys and arrows,
    // function for F-keys, arrows and the navigation block, help (with function) for Help.
    static quint32 keyKindFlags(quint16 macKeyCode);
    // Short English name for logs and the simulated screen ("A", "Return", "F5").
    static QString keyName(quint16 macKeyCode);
    // Shift, Control, Option, Command (either side) and Caps Lock: keys that only change
    // the flag word.
    static bool isModifierKey(quint16 macKeyCode);

    static Modifiers modifiersFromFlags(quint32 flags);
    static quint32 flagsFromModifiers(const Modifiers &modifiers);
    // "shift+command" style text for logs; empty when no modifier is set.
    static QString modifiersText(quint32 flags);
};
