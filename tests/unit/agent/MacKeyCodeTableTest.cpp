#include "input/MacKeyCodeTable.h"

#include <gtest/gtest.h>

TEST(MacKeyCodeTable, KnownKeysMapToPhysicalPositions)
{
    struct Case {
        quint16 mac;
        quint16 evdev;
    };
    // A, Z, 1, 0, Return, Tab, Space, BackSpace, forward Delete, Escape, arrows, Home,
    // End, Page Up/Down, Help, F1, F12, F20, keypad 0 and Enter, left Command, Caps Lock.
    const Case cases[] = {
        {0x00, 30},  {0x06, 44},  {0x12, 2},   {0x1D, 11},  {0x24, 28},  {0x30, 15},  {0x31, 57},
        {51, 14},    {117, 111},  {0x35, 1},   {0x7B, 105}, {0x7C, 106}, {0x7D, 108}, {0x7E, 103},
        {0x73, 102}, {0x77, 107}, {0x74, 104}, {0x79, 109}, {0x72, 110}, {0x7A, 59},  {0x6F, 88},
        {0x5A, 190}, {0x52, 82},  {0x4C, 96},  {0x37, 125}, {0x39, 58}};
    for (const Case &c : cases) {
        EXPECT_EQ(MacKeyCodeTable::evdevFromMac(c.mac), c.evdev) << "mac " << c.mac;
        EXPECT_EQ(MacKeyCodeTable::xKeycodeFromMac(c.mac), c.evdev + 8) << "mac " << c.mac;
    }
}

TEST(MacKeyCodeTable, EveryMappedKeyRoundTripsBothWays)
{
    int mapped = 0;
    for (quint16 mac = 0; mac < 200; ++mac) {
        const auto evdev = MacKeyCodeTable::evdevFromMac(mac);
        if (!evdev)
            continue;
        ++mapped;
        EXPECT_EQ(MacKeyCodeTable::macFromEvdev(*evdev), mac);
        EXPECT_EQ(MacKeyCodeTable::macFromXKeycode(*evdev + 8u), mac);
        EXPECT_FALSE(MacKeyCodeTable::keyName(mac).startsWith(QStringLiteral("key ")));
    }
    EXPECT_GE(mapped, 100);
}

TEST(MacKeyCodeTable, UnknownCodesHaveNoMapping)
{
    EXPECT_FALSE(MacKeyCodeTable::evdevFromMac(0x3F)); // Fn has no X keycode
    EXPECT_FALSE(MacKeyCodeTable::evdevFromMac(0x7F));
    EXPECT_FALSE(MacKeyCodeTable::evdevFromMac(0xFFFF));
    EXPECT_FALSE(MacKeyCodeTable::macFromXKeycode(0));
    EXPECT_FALSE(MacKeyCodeTable::macFromXKeycode(7));
    EXPECT_FALSE(MacKeyCodeTable::macFromXKeycode(4096));
    EXPECT_EQ(MacKeyCodeTable::keyName(0x7F), QStringLiteral("key 127"));
}

TEST(MacKeyCodeTable, FlagWordKeepsOnlyModifierBits)
{
    using T = MacKeyCodeTable;
    // Numeric-pad, function and device bits carry no modifier.
    EXPECT_EQ(T::modifiersFromFlags(0x200000 | 0x800000 | 0xFFFF), T::Modifiers{});
    const auto m = T::modifiersFromFlags(0x20000 | 0x100000 | 0x800000 | 0x0108);
    EXPECT_TRUE(m.shift);
    EXPECT_TRUE(m.command);
    EXPECT_FALSE(m.control || m.option || m.capsLock);
    EXPECT_EQ(T::flagsFromModifiers(m), 0x120000u);
    EXPECT_EQ(T::flagsFromModifiers(T::modifiersFromFlags(0x1F0000)), 0x1F0000u);
    EXPECT_EQ(T::modifiersText(0x40000 | 0x80000), QStringLiteral("control+option"));
    EXPECT_TRUE(T::isModifierKey(T::kVKShift));
    EXPECT_FALSE(T::isModifierKey(T::kVKReturn));
}

TEST(MacKeyCodeTable, KindFlagsFollowTheKeyGroups)
{
    using T = MacKeyCodeTable;
    const quint32 pad = T::numericPadFlag, fn = T::functionFlag, help = T::helpFlag;
    const std::pair<quint16, quint32> cases[] = {
        {0x00, 0},   {0x24, 0},   {0x31, 0},  {0x7B, pad | fn},  {0x7E, pad | fn},
        {0x7A, fn},  {0x5A, fn},  {0x73, fn}, {0x77, fn},        {0x74, fn},
        {0x79, fn},  {0x75, fn},  {0x33, 0},  {0x72, fn | help}, {0x52, pad},
        {0x4C, pad}, {0x47, pad}, {0x38, 0},  {0x7F, 0}};
    for (const auto &[mac, kind] : cases)
        EXPECT_EQ(T::keyKindFlags(mac), kind) << "mac " << mac;
    // The kind bits never read as modifiers.
    EXPECT_EQ(T::modifiersFromFlags(pad | fn | help), T::Modifiers{});
}

TEST(MacKeyCodeTable, QtKeysMapByUsPosition)
{
    struct Case {
        int qt;
        bool keypad;
        std::optional<quint16> mac;
    };
    const Case cases[] = {{Qt::Key_A, false, 0x00},
                          {Qt::Key_Z, false, 0x06},
                          {Qt::Key_Exclam, false, 0x12},
                          {Qt::Key_At, false, 0x13},
                          {Qt::Key_Question, false, 0x2C},
                          {Qt::Key_QuoteLeft, false, 0x32},
                          {Qt::Key_Return, false, 0x24},
                          {Qt::Key_Enter, false, 0x4C},
                          {Qt::Key_Delete, false, 0x75},
                          {Qt::Key_Backspace, false, 0x33},
                          {Qt::Key_Insert, false, 0x72},
                          {Qt::Key_F12, false, 0x6F},
                          {Qt::Key_Meta, false, 0x37},
                          {Qt::Key_Control, false, 0x3B},
                          {Qt::Key_AltGr, false, 0x3D},
                          {Qt::Key_5, true, 0x57},
                          {Qt::Key_Asterisk, true, 0x43},
                          {Qt::Key_Asterisk, false, 0x1C},
                          {Qt::Key_Left, true, 0x7B},
                          {Qt::Key_Eacute, false, std::nullopt},
                          {Qt::Key_unknown, false, std::nullopt}};
    for (const Case &c : cases)
        EXPECT_EQ(MacKeyCodeTable::macFromQtKey(c.qt, c.keypad), c.mac) << "qt " << c.qt;
    // Every modifier key, right-hand ones included, only changes the flag word.
    for (const quint16 mac : {0x36, 0x37, 0x38, 0x39, 0x3A, 0x3B, 0x3C, 0x3D, 0x3E})
        EXPECT_TRUE(MacKeyCodeTable::isModifierKey(mac)) << "mac " << mac;
    EXPECT_FALSE(MacKeyCodeTable::isModifierKey(0x3F));
}
