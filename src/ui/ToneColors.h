#pragma once

#include "presentation/Tone.h"

#include <QColor>
#include <QPalette>

// The colour of a tone: the accent is the palette's highlight, the secondary tone its
// placeholder text; the signal colours are fixed, chosen to read on light and dark bases.
namespace ToneColors {

QColor color(Tone tone, const QPalette &palette);

} // namespace ToneColors
