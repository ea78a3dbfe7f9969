#pragma once

#include <QString>
#include <optional>

// What the statistics report about the graphical session.
struct DisplayFacts {
    bool captureAvailable = false; // an X11 display is reachable and not a Wayland session
    bool inputAvailable = false;   // the display accepts synthetic input (XTest)
    std::optional<quint32> displayCount;
    std::optional<QString> mainResolution; // "1920x1080"
    QString activeProcess;                 // empty without a display or active window
};
