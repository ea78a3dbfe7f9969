#pragma once

#include <QObject>
#include <QTimer>

class AppState;
class Preferences;

// Keeps computers connected while "Supervision.autoConnectAll" is on: asks the store for
// a supervision pass on every tick, when the main view appears, when the computer list
// changes and when the setting changes (switching it on asks at once). Also hands the
// pending automation requests to the store whenever the application becomes active.
class SupervisionController : public QObject {
    Q_OBJECT

public:
    static constexpr int defaultPeriodMs = 60000;
    static constexpr double defaultRetryIntervalSeconds = 120.0;

    SupervisionController(AppState &appState, Preferences &preferences,
                          int periodMs = defaultPeriodMs,
                          double retryIntervalSeconds = defaultRetryIntervalSeconds,
                          QObject *parent = nullptr);

    bool isEnabled() const;
    int periodMs() const { return m_timer.interval(); }
    double retryIntervalSeconds() const { return m_retryIntervalSeconds; }

public Q_SLOTS:
    // Called by the main window once its view is shown.
    void mainViewAppeared();
    void applicationStateChanged(Qt::ApplicationState state);

Q_SIGNALS:
    // The pending automation requests were handed to the store (on becoming active).
    void pendingActionsHandedOver();

private:
    void requestPass();

    AppState &m_appState;
    Preferences &m_preferences;
    double m_retryIntervalSeconds;
    QTimer m_timer;
    bool m_isPassQueued = false;
};
