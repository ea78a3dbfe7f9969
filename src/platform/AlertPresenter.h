#pragma once

#include "Alert.h"

#include <QtGlobal>
#include <functional>

// Shows alerts to the user. The console installs a presenter made of message boxes; tests
// install one that answers from a script. Main thread only.
class AlertPresenter {
public:
    // Returned when an alert was closed without pressing a button, or aborted from code.
    static constexpr int closed = -1;
    using Completion = std::function<void(int buttonIndex)>;
    using Handle = quint64;

    virtual ~AlertPresenter() = default;

    // A new handle naming one modal alert, so code can abort exactly that alert.
    Handle newHandle() { return ++m_lastHandle; }
    // Runs the alert modally (nested event loop) and returns the pressed button's index,
    // or `closed`. An abort that arrives before the alert runs makes it return at once.
    virtual int runModal(const Alert &alert, Handle handle) = 0;
    // Ends the modal alert with that handle; it returns `closed` and is hidden.
    virtual void abortModal(Handle handle) = 0;
    // Shows the alert without blocking; `completion` gets the button index or `closed`.
    virtual void show(const Alert &alert, Completion completion) = 0;

    // The presenter the console set at start-up; null when none (tests, headless runs).
    static AlertPresenter *shared();
    static void setShared(AlertPresenter *presenter);

private:
    Handle m_lastHandle = 0;
};
