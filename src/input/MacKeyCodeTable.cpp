#include "MacKeyCodeTable.h"

#include <QStringList>
#include <array>

namespace {

constexpr quint32 kPad = MacKeyCodeTable::numericPadFlag;
constexpr quint32 kFn = MacKeyCodeTable::functionFlag;
constexpr quint32 kHelp = MacKeyCodeTable::helpFlag;

struct KeyEntry {
    quint16 mac;
    quint16 evdev;
    const char *name;
    quint32 kind = 0; // numeric-pad, function and help bits of the flag word
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
    {0x75, 111, "Delete", kFn},
    {0x35, 1, "Escape"},
    {0x7B, 105, "Left", kPad | kFn},
    {0x7C, 106, "Right", kPad | kFn},
    {0x7D, 108, "Down", kPad | kFn},
    {0x7E, 103, "Up", kPad | kFn},
    {0x73, 102, "Home", kFn},
    {0x77, 107, "End", kFn},
    {0x74, 104, "PageUp", kFn},
    {0x79, 109, "PageDown", kFn},
    // The Help key sits where PC keyboards have Insert.
    {0x72, 110, "Help", kFn | kHelp},
    // Function keys
    {0x7A, 59, "F1", kFn},
    {0x78, 60, "F2", kFn},
    {0x63, 61, "F3", kFn},
    {0x76, 62, "F4", kFn},
    {0x60, 63, "F5", kFn},
    {0x61, 64, "F6", kFn},
    {0x62, 65, "F7", kFn},
    {0x64, 66, "F8", kFn},
    {0x65, 67, "F9", kFn},
    {0x6D, 68, "F10", kFn},
    {0x67, 87, "F11", kFn},
    {0x6F, 88, "F12", kFn},
    {0x69, 183, "F13", kFn},
    {0x6B, 184, "F14", kFn},
    {0x71, 185, "F15", kFn},
    {0x6A, 186, "F16", kFn},
    {0x40, 187, "F17", kFn},
    {0x4F, 188, "F18", kFn},
    {0x50, 189, "F19", kFn},
    {0x5A, 190, "F20", kFn},
    // Keypad; Clear sits where PC keyboards have Num Lock.
    {0x52, 82, "Keypad0", kPad},
    {0x53, 79, "Keypad1", kPad},
    {0x54, 80, "Keypad2", kPad},
    {0x55, 81, "Keypad3", kPad},
    {0x56, 75, "Keypad4", kPad},
    {0x57, 76, "Keypad5", kPad},
    {0x58, 77, "Keypad6", kPad},
    {0x59, 71, "Keypad7", kPad},
    {0x5B, 72, "Keypad8", kPad},
    {0x5C, 73, "Keypad9", kPad},
    {0x41, 83, "KeypadDecimal", kPad},
    {0x43, 55, "KeypadMultiply", kPad},
    {0x45, 78, "KeypadPlus", kPad},
    {0x4B, 98, "KeypadDivide", kPad},
    {0x4E, 74, "KeypadMinus", kPad},
    {0x4C, 96, "KeypadEnter", kPad},
    {0x51, 117, "KeypadEquals", kPad},
    {0x47, 69, "KeypadClear", kPad},
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
    {0x5F, 95, "KeypadComma", kPad},
    {0x66, 123, "Eisu"},
    {0x68, 122, "Kana"},
};

// Qt key → the macOS code of the key at its US-layout position. Shifted characters name
// the key they are typed with. Digits, operators and Enter from the numeric pad are in
// kQtKeypadKeys.
struct QtKeyEntry {
    int qt;
    quint16 mac;
};

constexpr QtKeyEntry kQtKeys[] = {
    {Qt::Key_A, 0x00},
    {Qt::Key_B, 0x0B},
    {Qt::Key_C, 0x08},
    {Qt::Key_D, 0x02},
    {Qt::Key_E, 0x0E},
    {Qt::Key_F, 0x03},
    {Qt::Key_G, 0x05},
    {Qt::Key_H, 0x04},
    {Qt::Key_I, 0x22},
    {Qt::Key_J, 0x26},
    {Qt::Key_K, 0x28},
    {Qt::Key_L, 0x25},
    {Qt::Key_M, 0x2E},
    {Qt::Key_N, 0x2D},
    {Qt::Key_O, 0x1F},
    {Qt::Key_P, 0x23},
    {Qt::Key_Q, 0x0C},
    {Qt::Key_R, 0x0F},
    {Qt::Key_S, 0x01},
    {Qt::Key_T, 0x11},
    {Qt::Key_U, 0x20},
    {Qt::Key_V, 0x09},
    {Qt::Key_W, 0x0D},
    {Qt::Key_X, 0x07},
    {Qt::Key_Y, 0x10},
    {Qt::Key_Z, 0x06},
    // The digit row and what Shift types on it.
    {Qt::Key_0, 0x1D},
    {Qt::Key_ParenRight, 0x1D},
    {Qt::Key_1, 0x12},
    {Qt::Key_Exclam, 0x12},
    {Qt::Key_2, 0x13},
    {Qt::Key_At, 0x13},
    {Qt::Key_3, 0x14},
    {Qt::Key_NumberSign, 0x14},
    {Qt::Key_4, 0x15},
    {Qt::Key_Dollar, 0x15},
    {Qt::Key_5, 0x17},
    {Qt::Key_Percent, 0x17},
    {Qt::Key_6, 0x16},
    {Qt::Key_AsciiCircum, 0x16},
    {Qt::Key_7, 0x1A},
    {Qt::Key_Ampersand, 0x1A},
    {Qt::Key_8, 0x1C},
    {Qt::Key_Asterisk, 0x1C},
    {Qt::Key_9, 0x19},
    {Qt::Key_ParenLeft, 0x19},
    // Punctuation, plain and shifted.
    {Qt::Key_Minus, 0x1B},
    {Qt::Key_Underscore, 0x1B},
    {Qt::Key_Equal, 0x18},
    {Qt::Key_Plus, 0x18},
    {Qt::Key_BracketLeft, 0x21},
    {Qt::Key_BraceLeft, 0x21},
    {Qt::Key_BracketRight, 0x1E},
    {Qt::Key_BraceRight, 0x1E},
    {Qt::Key_Semicolon, 0x29},
    {Qt::Key_Colon, 0x29},
    {Qt::Key_Apostrophe, 0x27},
    {Qt::Key_QuoteDbl, 0x27},
    {Qt::Key_QuoteLeft, 0x32},
    {Qt::Key_AsciiTilde, 0x32},
    {Qt::Key_Backslash, 0x2A},
    {Qt::Key_Bar, 0x2A},
    {Qt::Key_Comma, 0x2B},
    {Qt::Key_Less, 0x2B},
    {Qt::Key_Period, 0x2F},
    {Qt::Key_Greater, 0x2F},
    {Qt::Key_Slash, 0x2C},
    {Qt::Key_Question, 0x2C},
    // Editing and navigation; Insert is where the Help key sits.
    {Qt::Key_Return, 0x24},
    {Qt::Key_Enter, 0x4C},
    {Qt::Key_Tab, 0x30},
    {Qt::Key_Backtab, 0x30},
    {Qt::Key_Space, 0x31},
    {Qt::Key_Backspace, 0x33},
    {Qt::Key_Delete, 0x75},
    {Qt::Key_Escape, 0x35},
    {Qt::Key_Left, 0x7B},
    {Qt::Key_Right, 0x7C},
    {Qt::Key_Down, 0x7D},
    {Qt::Key_Up, 0x7E},
    {Qt::Key_Home, 0x73},
    {Qt::Key_End, 0x77},
    {Qt::Key_PageUp, 0x74},
    {Qt::Key_PageDown, 0x79},
    {Qt::Key_Insert, 0x72},
    {Qt::Key_Help, 0x72},
    {Qt::Key_Clear, 0x47},
    {Qt::Key_NumLock, 0x47},
    // Function keys.
    {Qt::Key_F1, 0x7A},
    {Qt::Key_F2, 0x78},
    {Qt::Key_F3, 0x63},
    {Qt::Key_F4, 0x76},
    {Qt::Key_F5, 0x60},
    {Qt::Key_F6, 0x61},
    {Qt::Key_F7, 0x62},
    {Qt::Key_F8, 0x64},
    {Qt::Key_F9, 0x65},
    {Qt::Key_F10, 0x6D},
    {Qt::Key_F11, 0x67},
    {Qt::Key_F12, 0x6F},
    {Qt::Key_F13, 0x69},
    {Qt::Key_F14, 0x6B},
    {Qt::Key_F15, 0x71},
    {Qt::Key_F16, 0x6A},
    {Qt::Key_F17, 0x40},
    {Qt::Key_F18, 0x4F},
    {Qt::Key_F19, 0x50},
    {Qt::Key_F20, 0x5A},
    // Modifiers: Ctrl is Control and Super is Command, with no swapping; AltGr is Option.
    {Qt::Key_Shift, 0x38},
    {Qt::Key_Control, 0x3B},
    {Qt::Key_Alt, 0x3A},
    {Qt::Key_AltGr, 0x3D},
    {Qt::Key_Meta, 0x37},
    {Qt::Key_Super_L, 0x37},
    {Qt::Key_Super_R, 0x36},
    {Qt::Key_CapsLock, 0x39},
    // Media keys.
    {Qt::Key_VolumeMute, 0x4A},
    {Qt::Key_VolumeDown, 0x49},
    {Qt::Key_VolumeUp, 0x48},
};

constexpr QtKeyEntry kQtKeypadKeys[] = {
    {Qt::Key_0, 0x52},        {Qt::Key_1, 0x53},      {Qt::Key_2, 0x54},      {Qt::Key_3, 0x55},
    {Qt::Key_4, 0x56},        {Qt::Key_5, 0x57},      {Qt::Key_6, 0x58},      {Qt::Key_7, 0x59},
    {Qt::Key_8, 0x5B},        {Qt::Key_9, 0x5C},      {Qt::Key_Period, 0x41}, {Qt::Key_Comma, 0x5F},
    {Qt::Key_Asterisk, 0x43}, {Qt::Key_Plus, 0x45},   {Qt::Key_Slash, 0x4B},  {Qt::Key_Minus, 0x4E},
    {Qt::Key_Enter, 0x4C},    {Qt::Key_Return, 0x4C}, {Qt::Key_Equal, 0x51},  {Qt::Key_Clear, 0x47},
};

template <size_t N> std::optional<quint16> findQtKey(const QtKeyEntry (&keys)[N], int qtKey)
{
    for (const QtKeyEntry &entry : keys) {
        if (entry.qt == qtKey)
            return entry.mac;
    }
    return std::nullopt;
}

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

std::optional<quint16> MacKeyCodeTable::macFromQtKey(int qtKey, bool keypad)
{
    if (keypad) {
        if (const auto mac = findQtKey(kQtKeypadKeys, qtKey))
            return mac;
    }
    return findQtKey(kQtKeys, qtKey);
}

quint32 MacKeyCodeTable::keyKindFlags(quint16 macKeyCode)
{
    const KeyEntry *entry = entryForMac(macKeyCode);
    return entry ? entry->kind : 0;
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
