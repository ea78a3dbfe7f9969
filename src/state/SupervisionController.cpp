#include "SupervisionController.h"

#include "AppState.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"

#include <QCoreApplication>

SupervisionController::SupervisionController(AppState &appState, Preferences &preferences,
                                             int periodMs, double retryIntervalSeconds,
                                             QObject *parent)
    : QObject(parent), m_appState(appState), m_preferences(preferences),
      m_retryIntervalSeconds(retryIntervalSeconds)
{
    m_timer.setInterval(periodMs);
    connect(&m_timer, &QTimer::timeout, this, &SupervisionController::requestPass);
    connect(&m_appState, &AppState::computersChanged, this, &SupervisionController::requestPass);
    connect(&m_preferences, &Preferences::changed, this, [this](const QString &key) {
        if (key == QLatin1String(PreferenceKeys::supervisionAutoConnectAll))
            requestPass();
    });
    // Only a GUI application has this signal; the string form keeps this class free of
    // the GUI module.
    if (auto *app = QCoreApplication::instance();
        app &&
        app->metaObject()->indexOfSignal("applicationStateChanged(Qt::ApplicationState)") >= 0)
        connect(app, SIGNAL(applicationStateChanged(Qt::ApplicationState)), this,
                SLOT(applicationStateChanged(Qt::ApplicationState)));
    m_timer.start();
}

bool SupervisionController::isEnabled() const
{
    return m_preferences.boolValue(QLatin1String(PreferenceKeys::supervisionAutoConnectAll));
}

void SupervisionController::mainViewAppeared()
{
    requestPass();
}

void SupervisionController::applicationStateChanged(Qt::ApplicationState state)
{
    if (state != Qt::ApplicationActive)
        return;
    m_appState.processPendingActions();
    Q_EMIT pendingActionsHandedOver();
}

void SupervisionController::requestPass()
{
    // Passes run from the event loop, never inside the list change that asked for them:
    // a pass changes the list itself (computers become connecting), and a nested pass
    // would connect the computers the outer one has not reached yet a second time.
    if (m_isPassQueued)
        return;
    m_isPassQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isPassQueued = false;
            if (isEnabled())
                m_appState.autoConnectDisconnectedComputers(m_retryIntervalSeconds);
        },
        Qt::QueuedConnection);
}
