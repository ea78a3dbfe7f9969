#pragma once

#include <QString>

// The frame-rate slider's scale: positions 0…319 stand for 1…30 frames per second
// (value = 1 + position / 11), so the twelve marks every 29 positions are the evenly spaced
// rates 1, 3.64, 6.27, … 30 exactly, and the starting position 22 is exactly 3, which is not
// a mark. A user's change ends on a mark.
class FrameRateScale {
public:
    static constexpr int maximumPosition = 319;
    static constexpr int tickInterval = 29;
    static constexpr int initialPosition = 22;

    static double value(int position);
    // The mark a change ends on: a step, page or wheel turn from `previous` ends on the last
    // mark it passed (at least the next one in its direction); a drag on the nearest mark.
    static int snapped(int position, int previous, bool stepwise);
    // N " FPS", N the rate truncated to a whole number ("3 FPS").
    static QString text(double value);
    static int wholeFramesPerSecond(double value);
};
