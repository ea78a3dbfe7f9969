#pragma once

#include "IntentTable.h"

#include <QString>
#include <QStringView>

// The spoken and typed form of the automation actions: each action answers to its phrases
// (IntentTable), which end with the application's name.
class WardlineShortcuts {
public:
    // The action whose phrase `phrase` is, ignoring letter case and runs of white space, in
    // the user's language or in English; null when no action has it.
    static const IntentTable::Entry *match(QStringView phrase);
    // Every phrase, one per line, each followed by a tab and its action's short title.
    static QString listing();
};
