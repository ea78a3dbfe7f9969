#pragma once

#include <QStringView>
#include <optional>

// The port as typed in the forms.
struct PortText {
    // ASCII digits only, leading zeros allowed, with an optional "+" in front; "-" only when
    // every digit is 0 (giving 0). No blanks anywhere, no other scripts' digits; a value
    // above 65535 fails however it is written.
    static std::optional<quint16> parse(QStringView text);
};
