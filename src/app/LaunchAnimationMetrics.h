#pragma once

#include <QColor>
#include <QEasingCurve>
#include <QSizeF>

// The sizes and timings of the launch ripple: a ring that grows from the centre of the screen
// and the logo inside it. Sizes scale with the screen's shorter side so the ripple reads the
// same on a laptop and on a wall display; tiny or unknown screens get the smallest ring.
struct LaunchAnimationMetrics {
    static constexpr qreal minimumRingDiameter = 140;
    static constexpr qreal minimumStrokeWidth = 3;
    static constexpr qreal ringDiameterPerSide = 0.24;
    static constexpr qreal strokeWidthPerSide = 0.0045;
    static constexpr qreal ringOpacity = 0.65;
    static constexpr qreal logoSide = 200;
    // Where the logo starts before scaling up to its full side.
    static constexpr qreal logoStartScale = 0.5;

    // Milliseconds from the moment the overlay appears.
    static constexpr int logoScaleDuration = 550;
    static constexpr int ringExpansionDuration = 1100;
    static constexpr int logoFadeDelay = 500;
    static constexpr int logoFadeDuration = 550;
    static constexpr int completionDelay = 1300;

    qreal ringDiameter = minimumRingDiameter;
    qreal strokeWidth = minimumStrokeWidth;
    qreal expansionScale = 3.6;

    // `shorterSide` in device-independent pixels; 1 or less (or not a number) means unknown.
    static LaunchAnimationMetrics forShorterSide(qreal shorterSide);
    static LaunchAnimationMetrics forScreenSize(const QSizeF &size);

    // The ring's colour, its opacity included.
    static QColor ringColor();
    // Every movement of the ripple eases out along the cubic Bézier (0, 0, 0.58, 1).
    static QEasingCurve easeOut();
};
