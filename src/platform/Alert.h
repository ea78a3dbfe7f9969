#pragma once

#include <QString>
#include <QStringList>

// What a modal or asynchronous alert shows. Texts are already translated.
struct Alert {
    enum class Style { informational, warning, critical };
    static constexpr int none = -1;

    Style style = Style::informational;
    QString title;
    QString text;
    // In display order; the first is the default button unless one is destructive.
    QStringList buttons;
    // The button that destroys something: shown as such and never the default, so Return
    // cannot press it. With one, the cancel button is the default.
    int destructiveButton = none;
    // The button that answers Escape; the last button when none.
    int cancelButton = none;
};
