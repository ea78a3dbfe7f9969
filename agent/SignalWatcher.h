#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM and SIGINT into a Qt signal on the main thread (self-pipe), so the
// agent can stop its sessions cleanly.
class SignalWatcher : public QObject {
    Q_OBJECT
public:
    explicit SignalWatcher(QObject *parent = nullptr);
    ~SignalWatcher() override;

Q_SIGNALS:
    void received(const QString &signalName);

private:
    QSocketNotifier *m_notifier = nullptr;
};
