#pragma once

#include <QString>
#include <QStringList>

// What a modal or asynchronous alert shows. Texts are already translated.
struct Alert {
    enum class Style { informational, warning, critical };

    Style style = Style::informational;
    QString title;
    QString text;
    // In display order; the first is the default button.
    QStringList buttons;
};
