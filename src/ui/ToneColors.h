#pragma once

#include "presentation/Tone.h"

#include <QColor>
#include <QPalette>

class QWidget;

// The colour of a tone: the accent is the palette's highlight, the secondary tone its
// placeholder text; the signal colours are fixed, chosen to read on light and dark bases.
namespace ToneColors {

QColor color(Tone tone, const QPalette &palette);
// Makes the widget's text (its palette's window text) take the tone's colour.
void applyTo(QWidget *widget, Tone tone);

} // namespace ToneColors
