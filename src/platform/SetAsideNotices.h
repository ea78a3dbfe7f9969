#pragma once

#include "SetAsideCopy.h"

#include <QObject>

// Where the copies that settings files had to leave beside them are announced. A report
// is said at once on standard error (in every process, telvanectl included) and then
// announced on the main thread, where the console tells the user. Lives on the
// application's main thread; report() from any thread.
class SetAsideNotices : public QObject {
    Q_OBJECT

public:
    static SetAsideNotices &shared();

    void report(const SetAsideCopy &copy);
    // The line written on standard error, without the program's name.
    static QString describe(const SetAsideCopy &copy);

Q_SIGNALS:
    // Always from the event loop, never inside the code that made the copy.
    void reported(const SetAsideCopy &copy);

private:
    SetAsideNotices();
};
