#pragma once

#include <QObject>
#include <initializer_list>

class QSocketNotifier;

// Turns termination signals into a Qt signal on the thread that made the watcher, through
// a self-pipe: the handler only writes the signal's number, and a QSocketNotifier reads it
// in the event loop, where any work is safe. One watcher per process; the signals get
// their default handling back when it goes.
class SignalWatcher : public QObject {
    Q_OBJECT
public:
    explicit SignalWatcher(std::initializer_list<int> signalNumbers, QObject *parent = nullptr);
    ~SignalWatcher() override;

Q_SIGNALS:
    // The signal's name, e.g. "SIGTERM".
    void received(const QString &signalName);

private:
    QList<int> m_signals;
    QSocketNotifier *m_notifier = nullptr;
};
