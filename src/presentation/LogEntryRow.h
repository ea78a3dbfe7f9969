#pragma once

#include "Tone.h"

#include <QString>

// One log entry as the log viewer shows it: "[time] [CATEGORY] message" split at its
// first two closing brackets, so a bracket inside the message stays there. An entry with
// fewer than two closing brackets is all message, under "INFO".
struct LogEntryRow {
    QString time;
    QString category;
    QString message;

    static LogEntryRow parse(const QString &entry);
    // Red for "ERROR", orange for "WARN", secondary for any other (compared exactly).
    static Tone categoryTone(const QString &category);
};
