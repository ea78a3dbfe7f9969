#pragma once

#include <QString>

// How an automation action presents itself: its title and its parameters' descriptions
// (empty when the action has no such parameter).
struct IntentDescription {
    QString title;
    QString computerDescription;
    QString computerNameDescription;
    QString fileDescription;
};
