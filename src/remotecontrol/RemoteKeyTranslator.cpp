#include "RemoteKeyTranslator.h"

#include "input/MacKeyCodeTable.h"

#include <QKeyEvent>
#include <bit>

std::optional<RemoteKeyTranslator::Stroke> RemoteKeyTranslator::translate(const QKeyEvent &event)
{
    return translate(event.nativeScanCode(), event.key(), event.modifiers(),
                     event.nativeModifiers());
}

std::optional<RemoteKeyTranslator::Stroke>
RemoteKeyTranslator::translate(quint32 nativeScanCode, int qtKey, Qt::KeyboardModifiers modifiers,
                               quint32 nativeModifiers)
{
    std::optional<quint16> code;
    if (nativeScanCode != 0)
        code = MacKeyCodeTable::macFromXKeycode(nativeScanCode);
    if (!code)
        code = MacKeyCodeTable::macFromQtKey(qtKey, modifiers.testFlag(Qt::KeypadModifier));
    if (!code)
        return std::nullopt;
    return Stroke{*code,
                  modifierFlags(modifiers, nativeModifiers) | MacKeyCodeTable::keyKindFlags(*code)};
}

quint32 RemoteKeyTranslator::modifierFlags(Qt::KeyboardModifiers modifiers, quint32 nativeModifiers)
{
    quint32 flags = 0;
    if (modifiers.testFlag(Qt::ShiftModifier))
        flags |= MacKeyCodeTable::shiftFlag;
    if (modifiers.testFlag(Qt::ControlModifier))
        flags |= MacKeyCodeTable::controlFlag;
    if (modifiers & (Qt::AltModifier | Qt::GroupSwitchModifier))
        flags |= MacKeyCodeTable::optionFlag;
    if (modifiers.testFlag(Qt::MetaModifier))
        flags |= MacKeyCodeTable::commandFlag;
    if (nativeModifiers & nativeCapsLockMask)
        flags |= MacKeyCodeTable::capsLockFlag;
    return flags;
}

std::optional<int> RemoteKeyTranslator::buttonNumber(Qt::MouseButton button)
{
    const auto bits = quint32(button);
    if (bits == 0)
        return std::nullopt;
    return std::countr_zero(bits);
}
