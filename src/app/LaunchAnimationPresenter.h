#pragma once

#include "LaunchAnimationWindowController.h"

#include <QObject>
#include <QPointer>

class QWidget;

// Plays the launch ripple once for a main window, when the window says it is ready. A second
// "ready" while the ripple plays or after it played does nothing; a new main window brings a
// new presenter, which may play it again.
class LaunchAnimationPresenter : public QObject {
    Q_OBJECT

public:
    // Lives as long as `mainWindow` (its parent).
    explicit LaunchAnimationPresenter(QWidget *mainWindow);

    bool isAppReady() const { return m_appReady; }
    bool isPlaying() const { return m_playing; }
    bool hasPlayedThisSession() const { return m_playedThisSession; }

    LaunchAnimationWindowController &windowController() { return m_windowController; }

public Q_SLOTS:
    void setAppReady(bool ready);
    // The same as setAppReady(true), for a signal without arguments.
    void appBecameReady() { setAppReady(true); }

Q_SIGNALS:
    void playingChanged(bool playing);

private:
    void play();

    QPointer<QWidget> m_mainWindow;
    LaunchAnimationWindowController m_windowController;
    bool m_appReady = false;
    bool m_playing = false;
    bool m_playedThisSession = false;
};
