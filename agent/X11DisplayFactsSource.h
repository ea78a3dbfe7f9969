#pragma once

#include "DisplayFacts.h"
#include "X11Connection.h"

#include <QMutex>

// Display facts for the statistics: monitors and main resolution (RandR), whether XTest
// is there, and the front application (the process owning _NET_ACTIVE_WINDOW).
class X11DisplayFactsSource {
public:
    DisplayFacts query();

private:
    QString activeProcess();

    QMutex m_mutex; // guards m_x
    X11Connection m_x;
};
