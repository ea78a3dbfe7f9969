#pragma once

#include "model/Error.h"
#include "model/RemoteComputer.h"
#include "session/ScreenImageDecoder.h"

#include <QDateTime>
#include <QImage>
#include <QMap>
#include <QMetaObject>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QSizeF>
#include <QTimer>
#include <QVariantMap>
#include <functional>
#include <memory>

class AppState;
class ElidedLabel;
class FrameRateSlider;
class QKeyEvent;
class QLabel;
class QWidget;
class RemoteControlView;
class RemoteFrameView;
class ZEKTClient;

// The session, the frames and the input of one remote-control window. It starts the session
// (finding or making a connected client), streams at the slider's frame rate, shows every
// frame of its computer, sizes the window once to the remote aspect ratio and forwards the
// user's pointer and keys while the session is active. Main thread only, except
// handleScreenCaptureNotification, which hands the frame to the main thread.
class RemoteControlViewController : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    // Seconds the session start waits for a connected client; milliseconds between looks.
    static constexpr double connectionTimeout = 10.0;
    static constexpr int connectionPollIntervalMs = 100;
    // Pointer moves closer together than this (seconds) are dropped.
    static constexpr double mouseMoveInterval = 0.033;
    static constexpr int frameRateRestartDelayMs = 200;
    static constexpr int toggleReportDelayMs = 100;

    RemoteControlViewController(const RemoteComputer &computer, AppState &appState,
                                QObject *parent = nullptr);
    ~RemoteControlViewController() override;

    // View lifecycle. loadView builds the content view (the caller places and owns it);
    // viewDidLoad subscribes to frames and the computer's status; viewDidAppear gives the
    // content view the keyboard focus; viewDidLayout fits the frame to the image view.
    QWidget *loadView();
    void viewDidLoad();
    void viewDidAppear();
    void viewDidLayout();

    // Starts the session once; later calls do nothing.
    void activateRemoteControl();
    // "screenCaptureReceived" from any thread; frames of this computer are shown.
    void handleScreenCaptureNotification(const QString &name, const QVariantMap &userInfo);
    // The slider's action.
    void frameRateChanged();
    // Stops listening, drops the frame and ends every pending step. The window is closed.
    void cleanUp();

    // Input from the views, in the image view's coordinates (device independent).
    void mouseMoved(const QPointF &position, Qt::MouseButtons buttons);
    void mouseButton(const QPointF &position, Qt::MouseButton button, bool pressed);
    void keyEvent(const QKeyEvent &event, bool pressed);
    // Sends a release for every key and button still down on the remote computer (the
    // window lost the focus or is closing), so nothing stays stuck there.
    void releaseHeldInput();

    bool isRemoteControlActive() const { return m_isRemoteControlActive; }
    void setRemoteControlActive(bool active) { m_isRemoteControlActive = active; }
    bool isClosed() const { return m_isClosed; }
    const RemoteComputer &computer() const { return m_computer; }
    std::shared_ptr<ZEKTClient> zektClient() const { return m_zektClient; }
    const QImage &currentScreenImage() const { return m_currentScreenImage; }
    QSizeF serverScreenSize() const { return m_serverScreenSize; }
    bool isUpdatingImage() const { return m_isUpdatingImage; }
    bool hasAppliedInitialScreenAspectRatio() const { return m_hasAppliedInitialScreenAspectRatio; }
    double lastMouseMoveTime() const { return m_lastMouseMoveTime; }
    // The slider's frame rate (frames per second, not truncated).
    double frameRate() const;
    bool isRestartPending() const { return m_restartTimer.isActive(); }
    bool isWaitingForConnection() const { return m_connectionPoll.isActive(); }

    RemoteControlView *view() const;
    RemoteFrameView *imageView() const;
    ElidedLabel *statusLabel() const;
    FrameRateSlider *frameRateSlider() const;
    QLabel *frameRateValueLabel() const;
    QString statusText() const;

    // Tests: the wall clock of the move throttle and the start's time-out, and the visible
    // screen area of the aspect resize (the offscreen screen is 800 x 800).
    void setClockForTesting(Clock clock) { m_clock = std::move(clock); }
    void setVisibleAreaForTesting(const QSize &area) { m_visibleAreaForTesting = area; }

public Q_SLOTS:
    // Further actions no control of the window sends.
    void captureScreen();
    void disconnect();
    void toggleStreaming();

private:
    QDateTime now() const;
    // Runs `step` later on the main thread unless the window has closed by then.
    void later(std::function<void()> step, int delayMs = 0);
    void setStatus(const QString &text);
    void reportStreamingState();

    void startSession();
    void pollConnection();
    void sessionStarted(const std::shared_ptr<ZEKTClient> &client);
    void sessionFailed(const Error &error);
    void computerChanged(const QUuid &id);

    void processFrame(const QByteArray &imageData, quint32 displayWidth, quint32 displayHeight);
    void applyInitialScreenAspectRatio();
    QSize visibleArea() const;

    bool acceptsInput() const;
    std::optional<QPointF> remotePoint(const QPointF &position) const;
    void restartStreaming();

    RemoteComputer m_computer;
    AppState &m_appState;
    std::shared_ptr<ZEKTClient> m_zektClient;
    bool m_isRemoteControlActive = false;
    bool m_isClosed = false;
    bool m_sessionLost = false;

    QPointer<RemoteControlView> m_view;
    QPointer<RemoteFrameView> m_imageView;
    QPointer<QWidget> m_controlPanel;
    QPointer<ElidedLabel> m_statusLabel;
    QPointer<FrameRateSlider> m_frameRateSlider;
    QPointer<QLabel> m_frameRateValueLabel;

    QImage m_currentScreenImage;
    QSizeF m_serverScreenSize;
    bool m_isUpdatingImage = false;
    bool m_hasAppliedInitialScreenAspectRatio = false;
    double m_lastMouseMoveTime = 0;
    ScreenImageDecoder m_decoder;

    // What the remote computer holds down: keys with their flag word, buttons with the
    // remote point of their press.
    QMap<quint16, quint32> m_heldKeys;
    QMap<int, QPointF> m_heldButtons;

    QMetaObject::Connection m_notificationConnection;
    QTimer m_connectionPoll;
    QDateTime m_connectionStart;
    QTimer m_restartTimer;
    Clock m_clock;
    QSize m_visibleAreaForTesting;
};
