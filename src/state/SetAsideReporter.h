#pragma once

#include <QObject>
#include <QSet>

class AlertPresenter;
struct SetAsideCopy;

// Tells the console's user about settings files that were set aside: one alert for each
// copy, shown without blocking, and for a file that did not parse a line in the in-app
// log. Made before the state, so it hears what start-up sets aside; the alerts come once
// the event loop runs. Main thread.
class SetAsideReporter : public QObject {
    Q_OBJECT

public:
    explicit SetAsideReporter(AlertPresenter &presenter, QObject *parent = nullptr);

private:
    void tell(const SetAsideCopy &copy);

    AlertPresenter &m_presenter;
    QSet<QString> m_told;
};
