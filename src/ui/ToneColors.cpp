#include "ToneColors.h"

#include <QWidget>

namespace ToneColors {

QColor color(Tone tone, const QPalette &palette)
{
    switch (tone) {
    case Tone::accent:
        return palette.color(QPalette::Highlight);
    case Tone::green:
        return QColor(38, 158, 72);
    case Tone::blue:
        return QColor(26, 115, 232);
    case Tone::orange:
        return QColor(230, 124, 0);
    case Tone::red:
        return QColor(214, 45, 32);
    case Tone::secondary:
        break;
    }
    return palette.color(QPalette::PlaceholderText);
}

void applyTo(QWidget *widget, Tone tone)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color(tone, palette));
    widget->setPalette(palette);
}

} // namespace ToneColors
