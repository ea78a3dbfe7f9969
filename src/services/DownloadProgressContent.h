#pragma once

#include "DownloadPhase.h"

#include <QString>

// What the download progress view shows for a phase and progress, without a window.
struct DownloadProgressContent {
    enum class Bar { none, indeterminate, determinate };
    enum class Symbol { none, success, warning };

    Bar bar = Bar::none;
    int barPercent = 0; // determinate bar only
    Symbol symbol = Symbol::none;
    QString title;
    QString detail; // the failure's message, in the caption font
    bool showsShowInFinder = false;
    bool showsRetry = false;
    bool showsClose = false;

    // `progress` is 0 to 1; the percentage shown is floored (0.999 is 99 %).
    static DownloadProgressContent forPhase(const DownloadPhase &phase, double progress);
    static int wholePercent(double progress);
};
