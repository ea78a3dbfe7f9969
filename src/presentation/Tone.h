#pragma once

// The colour roles of the views' texts and symbols; the widgets layer picks the colours.
enum class Tone { accent, green, blue, orange, red, secondary };
