#include "MacKeyCodeTable.h"

#include <QStringList>
#include <array>

namespace {

struct KeyEntry {
    quint16 mac;
    quint16 evdev;
    const char *name;
};

// macOS virtual key code → Linux evdev code (linux/input-event-codes.h).
constexpr KeyEntry kKeys[] = {
    // Letters
    {0x00, 30, "A"},
    {0x0B, 48, "B"},
    {0x08, 46, "C"},
    {0x02, 32, "D"},
    {0x0E, 18, "E"},
    {0x03, 33, "F"},
    {0x05, 34, "G"},
    {0x04, 35, "H"},
    {0x22, 23, "I"},
    {0x26, 36, "J"},
    {0x28, 37, "K"},
    {0x25, 38, "L"},
    {0x2E, 50, "M"},
    {0x2D, 49, "N"},
    {0x1F, 24, "O"},
    {0x23, 25, "P"},
    {0x0C, 16, "Q"},
    {0x0F, 19, "R"},
    {0x01, 31, "S"},
    {0x11, 20, "T"},
    {0x20, 22, "U"},
    {0x09, 47, "V"},
    {0x0D, 17, "W"},
    {0x07, 45, "X"},
    {0x10, 21, "Y"},
    {0x06, 44, "Z"},
    // Digits (top row)
    {0x1D, 11, "0"},
    {0x12, 2, "1"},
    {0x13, 3, "2"},
    {0x14, 4, "3"},
    {0x15, 5, "4"},
    {0x17, 6, "5"},
    {0x16, 7, "6"},
    {0x1A, 8, "7"},
    {0x1C, 9, "8"},
    {0x19, 10, "9"},
    // Punctuation
    {0x1B, 12, "Minus"},
    {0x18, 13, "Equal"},
    {0x21, 26, "LeftBracket"},
    {0x1E, 27, "RightBracket"},
    {0x29, 39, "Semicolon"},
    {0x27, 40, "Quote"},
    {0x32, 41, "Grave"},
    {0x2A, 43, "Backslash"},
    {0x2B, 51, "Comma"},
    {0x2F, 52, "Period"},
    {0x2C, 53, "Slash"},
    {0x0A, 86, "Section"},
    // Editing and navigation
    {0x24, 28, "Return"},
    {0x30, 15, "Tab"},
    {0x31, 57, "Space"},
    {0x33, 14, "BackSpace"},
    {0x75, 111, "Delete"},
    {0x35, 1, "Escape"},
    {0x7B, 105, "Left"},
    {0x7C, 106, "Right"},
    {0x7D, 108, "Down"},
    {0x7E, 103, "Up"},
    {0x73, 102, "Home"},
    {0x77, 107, "End"},
    {0x74, 104, "PageUp"},
    {0x79, 109, "PageDown"},
    // The Help key sits where PC keyboards have Insert.
    {0x72, 110, "Help"},
    // Function keys
    {0x7A, 59, "F1"},
    {0x78, 60, "F2"},
    {0x63, 61, "F3"},
    {0x76, 62, "F4"},
    {0x60, 63, "F5"},
    {0x61, 64, "F6"},
    {0x62, 65, "F7"},
    {0x64, 66, "F8"},
    {0x65, 67, "F9"},
    {0x6D, 68, "F10"},
    {0x67, 87, "F11"},
    {0x6F, 88, "F12"},
    {0x69, 183, "F13"},
    {0x6B, 184, "F14"},
    {0x71, 185, "F15"},
    {0x6A, 186, "F16"},
    {0x40, 187, "F17"},
    {0x4F, 188, "F18"},
    {0x50, 189, "F19"},
    {0x5A, 190, "F20"},
    // Keypad; Clear sits where PC keyboards have Num Lock.
    {0x52, 82, "Keypad0"},
    {0x53, 79, "Keypad1"},
    {0x54, 80, "Keypad2"},
    {0x55, 81, "Keypad3"},
    {0x56, 75, "Keypad4"},
    {0x57, 76, "Keypad5"},
    {0x58, 77, "Keypad6"},
    {0x59, 71, "Keypad7"},
    {0x5B, 72, "Keypad8"},
    {0x5C, 73, "Keypad9"},
    {0x41, 83, "KeypadDecimal"},
    {0x43, 55, "KeypadMultiply"},
    {0x45, 78, "KeypadPlus"},
    {0x4B, 98, "KeypadDivide"},
    {0x4E, 74, "KeypadMinus"},
    {0x4C, 96, "KeypadEnter"},
    {0x51, 117, "KeypadEquals"},
    {0x47, 69, "KeypadClear"},
    // Modifiers
    {0x38, 42, "Shift"},
    {0x3C, 54, "RightShift"},
    {0x3B, 29, "Control"},
    {0x3E, 97, "RightControl"},
    {0x3A, 56, "Option"},
    {0x3D, 100, "RightOption"},
    {0x37, 125, "Command"},
    {0x36, 126, "RightCommand"},
    {0x39, 58, "CapsLock"},
    // Media and international keys
    {0x4A, 113, "Mute"},
    {0x49, 114, "VolumeDown"},
    {0x48, 115, "VolumeUp"},
    {0x5D, 124, "Yen"},
    {0x5E, 89, "Underscore"},
    {0x5F, 95, "KeypadComma"},
    {0x66, 123, "Eisu"},
    {0x68, 122, "Kana"},
};

constexpr int kMacCodeCount = 128;
constexpr int kEvdevCodeCount = 256;

struct Tables {
    std::array<qint16, kMacCodeCount> macToIndex{};
    std::array<qint16, kEvdevCodeCount> evdevToIndex{};
    Tables()
    {
        macToIndex.fill(-1);
        evdevToIndex.fill(-1);
        for (qsizetype i = 0; i < qsizetype(std::size(kKeys)); ++i) {
            macToIndex[kKeys[i].mac] = qint16(i);
            evdevToIndex[kKeys[i].evdev] = qint16(i);
        }
    }
};

const Tables &tables()
{
    static const Tables t;
    return t;
}

const KeyEntry *entryForMac(quint16 mac)
{
    if (mac >= kMacCodeCount)
        return nullptr;
    const qint16 index = tables().macToIndex[mac];
    return index < 0 ? nullptr : &kKeys[index];
}

} // namespace

std::optional<quint16> MacKeyCodeTable::evdevFromMac(quint16 macKeyCode)
{
    if (const KeyEntry *entry = entryForMac(macKeyCode))
        return entry->evdev;
    return std::nullopt;
}

std::optional<quint16> MacKeyCodeTable::macFromEvdev(quint16 evdevCode)
{
    if (evdevCode >= kEvdevCodeCount)
        return std::nullopt;
    const qint16 index = tables().evdevToIndex[evdevCode];
    if (index < 0)
        return std::nullopt;
    return kKeys[index].mac;
}

std::optional<quint8> MacKeyCodeTable::xKeycodeFromMac(quint16 macKeyCode)
{
    const auto evdev = evdevFromMac(macKeyCode);
    if (!evdev || *evdev + 8 > 255)
        return std::nullopt;
    return quint8(*evdev + 8);
}

std::optional<quint16> MacKeyCodeTable::macFromXKeycode(quint32 xKeycode)
{
    if (xKeycode < 8 || xKeycode > 255)
        return std::nullopt;
    return macFromEvdev(quint16(xKeycode - 8));
}

QString MacKeyCodeTable::keyName(quint16 macKeyCode)
{
    if (const KeyEntry *entry = entryForMac(macKeyCode))
        return QString::fromLatin1(entry->name);
    return QStringLiteral("key %1").arg(macKeyCode);
}

bool MacKeyCodeTable::isModifierKey(quint16 macKeyCode)
{
    return macKeyCode >= 0x36 && macKeyCode <= 0x3E;
}

MacKeyCodeTable::Modifiers MacKeyCodeTable::modifiersFromFlags(quint32 flags)
{
    Modifiers m;
    m.capsLock = flags & capsLockFlag;
    m.shift = flags & shiftFlag;
    m.control = flags & controlFlag;
    m.option = flags & optionFlag;
    m.command = flags & commandFlag;
    return m;
}

quint32 MacKeyCodeTable::flagsFromModifiers(const Modifiers &m)
{
    return (m.capsLock ? capsLockFlag : 0) | (m.shift ? shiftFlag : 0) |
           (m.control ? controlFlag : 0) | (m.option ? optionFlag : 0) |
           (m.command ? commandFlag : 0);
}

QString MacKeyCodeTable::modifiersText(quint32 flags)
{
    const Modifiers m = modifiersFromFlags(flags);
    QStringList parts;
    if (m.capsLock)
        parts << QStringLiteral("capslock");
    if (m.control)
        parts << QStringLiteral("control");
    if (m.option)
        parts << QStringLiteral("option");
    if (m.shift)
        parts << QStringLiteral("shift");
    if (m.command)
        parts << QStringLiteral("command");
    return parts.join(QLatin1Char('+'));
}
