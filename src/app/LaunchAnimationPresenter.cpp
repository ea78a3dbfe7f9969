#include "LaunchAnimationPresenter.h"

#include <QWidget>

LaunchAnimationPresenter::LaunchAnimationPresenter(QWidget *mainWindow)
    : QObject(mainWindow), m_mainWindow(mainWindow)
{
}

void LaunchAnimationPresenter::setAppReady(bool ready)
{
    m_appReady = ready;
    if (!ready || m_playing || m_playedThisSession)
        return;
    m_playedThisSession = true;
    m_playing = true;
    Q_EMIT playingChanged(true);
    // Not from inside whatever made the window ready: its first paint comes first.
    QMetaObject::invokeMethod(this, &LaunchAnimationPresenter::play, Qt::QueuedConnection);
}

void LaunchAnimationPresenter::play()
{
    m_windowController.show(m_mainWindow, [this] {
        m_playing = false;
        Q_EMIT playingChanged(false);
    });
}
