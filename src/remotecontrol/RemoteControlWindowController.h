#pragma once

#include "model/RemoteComputer.h"

#include <QObject>
#include <QPointer>
#include <QSize>
#include <QTimer>
#include <memory>

class AppState;
class RemoteControlViewController;
class RemoteControlWindow;

// Owns one remote-control window: its title, its size rules and its close. The window is
// top level and lives on its own; the controller deletes itself after the window closed, so
// whoever keeps a pointer to it holds a QPointer. The window is never destroyed without its
// close having run.
class RemoteControlWindowController : public QObject {
    Q_OBJECT

public:
    static constexpr int initialContentWidth = 1280;
    static constexpr int initialContentHeight = 720;
    static constexpr int minimumContentHeight = 490;
    // How long a user's resize must pause before the aspect rule is applied.
    static constexpr int resizeSettleMs = 150;

    RemoteControlWindowController(const RemoteComputer &computer, AppState &appState,
                                  QObject *parent = nullptr);
    ~RemoteControlWindowController() override;

    // Shows the window and starts the session.
    void showWindow();
    // From the window's close: stops input and the stream, saves the geometry, cleans up,
    // and deletes this controller once control returns to the event loop.
    void windowWillClose();
    // The content size a user's resize to `proposedContentSize` may take, on a screen whose
    // visible area is `visibleArea`; the current size while a frame is being applied.
    QSize windowWillResize(const QSize &proposedContentSize, const QSize &visibleArea) const;
    void windowDidResize();
    // The user resized the window; the aspect rule follows once the drag pauses.
    void windowResizedByUser();
    void windowActivationChanged(bool active);

    bool isRemoteControlActive() const { return m_isRemoteControlActive; }
    const RemoteComputer &computer() const { return m_computer; }
    RemoteControlWindow *window() const { return m_window.get(); }
    RemoteControlViewController *remoteControlView() const { return m_remoteControlView.get(); }
    bool isResizeRulePending() const { return m_resizeSettle.isActive(); }

    // The standard-store key of the window's geometry.
    static QString geometryKey(const QUuid &computerId);

private:
    void applyResizeRule();

    RemoteComputer m_computer;
    AppState &m_appState;
    bool m_isRemoteControlActive = false;
    bool m_isClosed = false;
    std::unique_ptr<RemoteControlViewController> m_remoteControlView;
    std::unique_ptr<RemoteControlWindow> m_window;
    QTimer m_resizeSettle;
};
