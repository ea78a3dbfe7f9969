// The remote-control window through its factory and controllers, with the real session
// manager over a scripted client, on the offscreen platform. Run a second time with
// QT_SCALE_FACTOR=2: positions and sizes are device independent.
#include "remotecontrol/RemoteControlWindow.h"
#include "SessionHarness.h"
#include "platform/NotificationHub.h"
#include "platform/SettingsFiles.h"
#include "remotecontrol/FrameRateSlider.h"
#include "remotecontrol/RemoteControlView.h"
#include "remotecontrol/RemoteControlViewController.h"
#include "remotecontrol/RemoteControlWindowController.h"
#include "remotecontrol/RemoteControlWindowLauncher.h"
#include "remotecontrol/RemoteFrameView.h"
#include "session/DecodedFrameCache.h"
#include "ui/ElidedLabel.h"

#include <QApplication>
#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionSlider>

namespace {

// One computer, its session manager over fakes, and a window opened through the factory.
struct Session {
    SessionHarness h;
    RemoteControlWindowLauncher launcher{*h.state};
    QPointer<RemoteControlWindowController> window;
    QDateTime clock = QDateTime::currentDateTimeUtc();

    RemoteControlViewController &view() const { return *window->remoteControlView(); }
    RemoteControlWindow &widget() const { return *window->window(); }
    int calls(const char *operation) const
    {
        return h.fakes.isEmpty() ? 0 : h.fake().callCount(QLatin1String(operation));
    }
    QVariantList last(const char *operation) const
    {
        return h.fake().lastArguments(QLatin1String(operation));
    }

    // Completes the session's pending call of `operation` once it was made.
    bool complete(const char *operation, const std::optional<QString> &error = std::nullopt)
    {
        return QTest::qWaitFor([&] { return calls(operation) > 0; }) &&
               h.fake().complete(QLatin1String(operation), error);
    }

    bool open(bool connected = true)
    {
        if (connected && !h.connect())
            return false;
        window = qobject_cast<RemoteControlWindowController *>(
            launcher.openRemoteControlWindow(h.computer.id));
        if (!window)
            return false;
        view().setClockForTesting([this] { return clock; });
        return !connected ||
               QTest::qWaitFor([this] { return calls("startContinuousStreaming") == 1; });
    }
    bool activate()
    {
        widget().activateWindow();
        return QTest::qWaitForWindowActive(&widget());
    }
    void post(const QByteArray &bytes, const QVariant &width = 0u, const QVariant &height = 0u,
              const QVariant &id = {})
    {
        NotificationHub::shared().post(
            QStringLiteral("screenCaptureReceived"),
            {{"computerID", id.isValid() ? id : QVariant::fromValue(h.computer.id)},
             {"imageData", bytes},
             {"displayWidth", width},
             {"displayHeight", height}});
    }
    // Shows a frame of a remote screen of that size and waits until it is on screen.
    bool showFrame(int width, int height)
    {
        post(encodedImage(64, 32), quint32(width), quint32(height));
        return QTest::qWaitFor([&] { return view().serverScreenSize() == QSizeF(width, height); });
    }
    void key(QEvent::Type type, int key, quint32 scanCode, Qt::KeyboardModifiers modifiers = {},
             bool autoRepeat = false)
    {
        QKeyEvent event(type, key, modifiers, scanCode, 0, 0, QString(), autoRepeat);
        QApplication::sendEvent(view().view(), &event);
    }
};

} // namespace

class RemoteControlWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sessionStartsOnTheConnectedClient()
    {
        Session s;
        QVERIFY(s.open());
        QCOMPARE(s.widget().windowTitle(), QStringLiteral("Remote Control - Studio"));
        QCOMPARE(s.widget().minimumSize(), QSize(800, 490));
        QCOMPARE(s.last("startContinuousStreaming").at(2).toDouble(), 3.0); // truncated
        QTRY_COMPARE(s.view().statusText(), QStringLiteral("Connected"));
        QVERIFY(s.view().isRemoteControlActive() && s.window->isRemoteControlActive());
        QCOMPARE(LogLines::count("CONNECT", "Using ZEKTManager connection for remote control"), 1);
        QCOMPARE(LogLines::countStartingWith("No active managed connection"), 0);
        // At load, at activation and at the start; each read when its turn comes.
        QTRY_COMPARE(LogLines::count("SCREEN", "Remote control streaming state: ACTIVE"), 3);
        QCOMPARE(s.view().frameRateValueLabel()->text(), QStringLiteral("3 FPS"));
    }

    void sessionConnectsFirstWhenNeeded_data()
    {
        QTest::addColumn<bool>("closedFirst");
        QTest::newRow("window open") << false;
        QTest::newRow("window closed during the start") << true;
    }
    void sessionConnectsFirstWhenNeeded()
    {
        QFETCH(bool, closedFirst);
        Session s;
        QVERIFY(s.open(false));
        QTRY_COMPARE(LogLines::count("CONNECT", "No active managed connection found, connecting "
                                                "before starting remote control"),
                     1);
        QVERIFY(s.view().isWaitingForConnection());
        s.key(QEvent::KeyPress, Qt::Key_A, 38); // no client yet: dropped
        if (closedFirst) {
            s.widget().close();
            QTRY_VERIFY(!s.window);
        }
        QVERIFY(s.complete("connect"));
        QVERIFY(s.complete("authenticate"));
        QTRY_VERIFY(s.h.record().isConnected);
        if (closedFirst) {
            // Abandoned: no stream, no client taken.
            QCoreApplication::processEvents();
            QCOMPARE(s.calls("startContinuousStreaming"), 0);
            QCOMPARE(LogLines::count("CONNECT", "Using ZEKTManager connection for remote control"),
                     0);
        } else {
            QTRY_COMPARE(s.calls("startContinuousStreaming"), 1);
            QTRY_COMPARE(s.view().statusText(), QStringLiteral("Connected"));
            QVERIFY(s.view().zektClient());
        }
        QCOMPARE(s.calls("sendKeyboardEvent"), 0);
    }

    void sessionStartFails_data()
    {
        QTest::addColumn<bool>("timesOut");
        QTest::newRow("the connection fails") << false;
        QTest::newRow("no connection in 10 s") << true;
    }
    void sessionStartFails()
    {
        QFETCH(bool, timesOut);
        Session s;
        QVERIFY(s.open(false));
        QTRY_VERIFY(s.view().isWaitingForConnection());
        if (timesOut) {
            s.clock = s.clock.addSecs(10);
        } else {
            QVERIFY(s.complete("connect", QStringLiteral("Connection refused")));
            QTRY_VERIFY(s.h.record().lastError.has_value());
        }
        const QString reason = timesOut ? QStringLiteral("Timed out waiting for the remote Mac "
                                                         "connection")
                                        : s.h.record().lastError.value_or(QString());
        QVERIFY(!reason.isEmpty());
        QTRY_COMPARE(s.view().statusText(), QStringLiteral("Connection failed: ") + reason);
        QCOMPARE(LogLines::count("ERROR", "Failed to start remote control: " + reason), 1);
        QTRY_VERIFY(!s.view().isRemoteControlActive());
        QVERIFY(!s.view().isWaitingForConnection());
        QVERIFY(s.widget().isVisible()); // no retry, the window stays

        // Without a client the stream cannot be stopped; the window closes all the same.
        if (!timesOut) {
            s.widget().close();
            QCOMPARE(LogLines::count("ERROR", "Failed to send stop streaming message for Studio "
                                              "before window close: No active client for "
                                              "computer"),
                     1);
            QTRY_VERIFY(!s.window);
        }
    }

    void framesRepairsAndErrors()
    {
        Session s;
        QVERIFY(s.open());
        const QByteArray frame = encodedImage(200, 100);
        // Three stray bytes before the marker; no display size: the image's own.
        s.post("abc" + frame);
        QTRY_COMPARE(s.view().serverScreenSize(), QSizeF(200, 100));
        QCOMPARE(LogLines::count("SCREEN", "Fixed corrupted image data by removing 3 extra bytes"),
                 1);
        QCOMPARE(s.view().statusText(), QStringLiteral("Connected - Screen: 200x100"));
        QVERIFY(s.view().imageView()->hasFrame());

        // Undecodable: one line with the bytes, the previous frame stays.
        const QString failed = QStringLiteral("Failed to create NSImage from screen capture data "
                                              "in RemoteControlWindowController. ");
        s.post(QByteArray(1, '\x07'));
        QTRY_COMPARE(LogLines::count("ERROR", failed + "Size: 1 bytes, Prefix: 07, Suffix: 07"), 1);
        QCOMPARE(s.view().currentScreenImage().size(), QSize(200, 100));

        // Other computers and ill-typed entries are ignored; a bad width counts as 0.
        s.post(encodedImage(30, 30), 30u, 30u, QVariant::fromValue(QUuid::createUuid()));
        s.post(encodedImage(30, 30), 30u, 30u, s.h.computer.id.toString());
        s.post(encodedImage(40, 20), QStringLiteral("wide"), 1080u);
        QTRY_COMPARE(s.view().serverScreenSize(), QSizeF(40, 20));

        // The pipeline's decode of these very bytes is used, repair line included.
        QImage cached(16, 8, QImage::Format_RGB32);
        cached.fill(Qt::red);
        const QByteArray bytes = "xyz" + frame;
        DecodedFrameCache::shared().insert(s.h.computer.id, bytes, cached);
        s.post(bytes, 2560u, 1440u);
        QTRY_COMPARE(s.view().currentScreenImage().size(), QSize(16, 8));
        QCOMPARE(s.view().statusText(), QStringLiteral("Connected - Screen: 2560x1440"));
        QCOMPARE(LogLines::countStartingWith("Fixed corrupted image data"), 2);
    }

    void windowSizing()
    {
        Session s;
        QVERIFY(s.open());
        QCOMPARE(s.widget().size(), QSize(1280, 720));
        QVERIFY(!s.window->isResizeRulePending()); // not on show
        s.view().setVisibleAreaForTesting({1440, 875});
        QVERIFY(s.showFrame(2880, 1800));
        QCOMPARE(s.widget().size(), QSize(1000, 665));
        QCOMPARE(s.widget().minimumSize(), QSize(800, 540));
        QVERIFY(s.showFrame(1600, 1000));
        QCOMPARE(LogLines::count("UI", "Resized remote control window to match server screen "
                                       "aspect ratio 1.60"),
                 1); // once per window
        QVERIFY(!s.window->isResizeRulePending());

        QVERIFY(s.showFrame(1920, 1080));
        QCOMPARE(s.window->windowWillResize({1400, 700}, {1920, 1080}), QSize(1173, 700));
        s.widget().resize(1400, 700);
        QVERIFY(!s.window->isResizeRulePending()); // the code's own resize
        s.window->windowResizedByUser();
        // 1173 wide, unless the screen is narrower (the offscreen one is 800).
        QTRY_COMPARE(s.widget().width(),
                     std::min(1173, std::max(800, s.widget().visibleArea().width())));
        QCOMPARE(s.widget().height(), 700);

        // The next window for the computer opens where this one was left.
        s.widget().close();
        QTRY_VERIFY(!s.window);
        QVERIFY(s.open(false));
        QCOMPARE(s.widget().height(), 700);
        QVERIFY(!s.window->isResizeRulePending()); // not on restore
    }

    void pointer()
    {
        Session s;
        QVERIFY(s.open());
        QVERIFY(s.activate());
        RemoteFrameView *image = s.view().imageView();
        // Before the first frame each axis logs and (0, 0) is sent.
        QTest::mouseClick(image, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(s.last("sendMouseEvent"), (QVariantList{0.0, 0.0, 0, false}));
        QCOMPARE(LogLines::countStartingWith("Invalid coordinate conversion parameters: "
                                             "clientCoord="),
                 4);

        QVERIFY(s.showFrame(2000, 1000));
        s.widget().resize(1000, 540);
        QTRY_COMPARE(image->size(), QSize(1000, 500));
        QCOMPARE(image->scaledFrame().size(), image->size() * image->devicePixelRatio());
        if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR"))
            QCOMPARE(image->devicePixelRatio(), qEnvironmentVariable("QT_SCALE_FACTOR").toDouble());
        // In the view's device-independent units (the corners are in the rules' test).
        QTest::mousePress(image, Qt::LeftButton, {}, QPoint(999, 499));
        QCOMPARE(s.last("sendMouseEvent"), (QVariantList{1998.0, 2.0, 0, true}));
        // Buttons by bit index; a release outside the image is not sent, and a button still
        // down when the window loses the focus is released.
        const QList<Qt::MouseButton> buttons{Qt::RightButton, Qt::MiddleButton, Qt::BackButton,
                                             Qt::ForwardButton};
        for (int i = 0; i < buttons.size(); ++i) {
            QTest::mousePress(image, buttons[i], {}, QPoint(500, 250));
            QCOMPARE(s.last("sendMouseEvent").at(2).toInt(), i + 1);
        }
        const int sent = s.calls("sendMouseEvent");
        QTest::mouseRelease(image, Qt::ForwardButton, {}, QPoint(500, 600));
        QCOMPARE(s.calls("sendMouseEvent"), sent);
        QTest::mouseRelease(image, Qt::LeftButton, {}, QPoint(500, 250));
        s.window->windowActivationChanged(false);
        QCOMPARE(s.calls("sendMouseEvent"), sent + 5); // the left release, then four held
        QCOMPARE(s.last("sendMouseEvent"), (QVariantList{1000.0, 500.0, 4, false}));

        // Moves: one per 33 ms; one outside the image uses its slot; drags send nothing.
        const QDateTime start = s.clock;
        const QList<QPair<int, QPointF>> moves{{0, {100, 100}},   {20, {100, 100}},
                                               {40, {100, 100}},  {80, {-5, 100}},
                                               {100, {100, 100}}, {114, {100, 100}}};
        QList<int> sentAt;
        for (const auto &[ms, at] : moves) {
            s.clock = start.addMSecs(ms);
            const int before = s.calls("sendMouseMoveEvent");
            s.view().mouseMoved(at, Qt::NoButton);
            if (s.calls("sendMouseMoveEvent") > before)
                sentAt << ms;
        }
        QCOMPARE(sentAt, (QList<int>{0, 40, 114}));
        QCOMPARE(s.last("sendMouseMoveEvent"), (QVariantList{200.0, 800.0, 0.0, 0.0}));
        s.clock = start.addSecs(1);
        s.view().mouseMoved({100, 100}, Qt::LeftButton);
        s.view().setRemoteControlActive(false);
        s.view().mouseMoved({100, 100}, Qt::NoButton);
        QCOMPARE(s.calls("sendMouseMoveEvent"), 3);
        QCOMPARE(s.view().lastMouseMoveTime(),
                 double(start.addMSecs(114).toMSecsSinceEpoch()) / 1000);
        s.view().setRemoteControlActive(true);
        const int before = s.calls("sendMouseEvent") + s.calls("sendMouseMoveEvent");
        QWheelEvent wheel({100, 100}, {100, 100}, {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(image, &wheel); // the session has no wheel message
        QCOMPARE(s.calls("sendMouseEvent") + s.calls("sendMouseMoveEvent"), before);
    }

    void keys()
    {
        Session s;
        QVERIFY(s.open());
        QVERIFY(s.activate());
        QTRY_COMPARE(QApplication::focusWidget(), s.view().view());
        s.key(QEvent::KeyPress, Qt::Key_Shift, 50, Qt::ShiftModifier); // modifier alone
        s.key(QEvent::KeyPress, Qt::Key_A, 38, Qt::ShiftModifier);
        s.key(QEvent::KeyRelease, Qt::Key_A, 38, Qt::ShiftModifier, true); // repeat pair
        s.key(QEvent::KeyPress, Qt::Key_A, 38, Qt::ShiftModifier, true);
        s.key(QEvent::KeyRelease, Qt::Key_A, 38, Qt::ShiftModifier);
        s.key(QEvent::KeyRelease, Qt::Key_Shift, 50);
        s.key(QEvent::KeyPress, Qt::Key_Eacute, 0); // no key code: nothing
        QTest::keyClick(s.view().view(), Qt::Key_Tab);
        s.key(QEvent::KeyPress, Qt::Key_Right, 114);
        QStringList sent;
        for (const FakeZEKTClient::Call &call : std::as_const(s.h.fake().calls))
            if (call.operation == QLatin1String("sendKeyboardEvent"))
                sent << QStringLiteral("%1 %2 %3")
                            .arg(call.arguments[0].toUInt(), 0, 16)
                            .arg(call.arguments[1].toBool() ? "down" : "up")
                            .arg(call.arguments[2].toUInt(), 0, 16);
        QCOMPARE(sent, (QStringList{"0 down 20000", "0 down 20000", "0 up 20000", "30 down 0",
                                    "30 up 0", "7c down a00000"}));
        QCOMPARE(QApplication::focusWidget(), s.view().view()); // Tab stayed in the window
        QKeyEvent shortcut(QEvent::ShortcutOverride, Qt::Key_W, Qt::ControlModifier);
        shortcut.ignore();
        QApplication::sendEvent(s.view().view(), &shortcut);
        QVERIFY(shortcut.isAccepted());

        // The arrow still held is released when the window closes.
        s.widget().close();
        QCOMPARE(s.last("sendKeyboardEvent"), (QVariantList{quint16(0x7C), false, 0xA00000u}));
    }

    void frameRate()
    {
        Session s;
        QVERIFY(s.open());
        FrameRateSlider *slider = s.view().frameRateSlider();
        QVERIFY(slider->focusPolicy() == Qt::NoFocus);
        slider->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(slider->value(), 29);
        QCOMPARE(s.view().frameRateValueLabel()->text(), QStringLiteral("3 FPS"));
        QCOMPARE(LogLines::count("SCREEN", "Frame rate changed to 3 FPS"), 1);
        QCOMPARE(s.calls("stopContinuousStreaming"), 1);
        QVERIFY(s.view().isRestartPending());
        QCOMPARE(s.calls("startContinuousStreaming"), 1);
        QTRY_COMPARE(s.calls("startContinuousStreaming"), 2);
        QCOMPARE(s.last("startContinuousStreaming").at(2).toDouble(), 1 + 29 / 11.0);
        QCOMPARE(LogLines::count("SCREEN", "Restarted streaming with new frame rate: 3 FPS"), 1);
        QTRY_COMPARE(s.view().statusText(), QStringLiteral("Streaming at 3 FPS"));

        // A drag: the label follows it, the stream restarts once, at the release, on a mark.
        QSignalSpy changed(slider, &QAbstractSlider::valueChanged);
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.orientation = Qt::Horizontal;
        option.minimum = slider->minimum();
        option.maximum = slider->maximum();
        option.sliderPosition = option.sliderValue = slider->value();
        option.tickPosition = slider->tickPosition();
        const QPoint handle =
            slider->style()
                ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider)
                .center();
        QTest::mousePress(slider, Qt::LeftButton, {}, handle);
        for (int dx : {15, 30, 45}) {
            QMouseEvent move(QEvent::MouseMove, handle + QPoint(dx, 0),
                             slider->mapToGlobal(handle + QPoint(dx, 0)), Qt::NoButton,
                             Qt::LeftButton, {});
            QApplication::sendEvent(slider, &move);
        }
        QVERIFY(changed.isEmpty());
        const QString following = s.view().frameRateValueLabel()->text();
        QTest::mouseRelease(slider, Qt::LeftButton, {}, handle + QPoint(45, 0));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(slider->value() % 29, 0);
        QVERIFY(slider->value() > 29);
        QCOMPARE(following, s.view().frameRateValueLabel()->text());
        QTRY_COMPARE(s.calls("startContinuousStreaming"), 3);
        QCOMPARE(s.calls("stopContinuousStreaming"), 2);

        // Inactive: the label and the log only.
        s.view().setRemoteControlActive(false);
        slider->triggerAction(QAbstractSlider::SliderToMinimum);
        QCOMPARE(s.view().frameRateValueLabel()->text(), QStringLiteral("1 FPS"));
        QVERIFY(!s.view().isRestartPending());
        QCOMPARE(s.calls("stopContinuousStreaming"), 2);
    }

    void closing()
    {
        Session s;
        QVERIFY(s.open());
        QVERIFY(s.showFrame(1920, 1080));
        s.view().frameRateSlider()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        RemoteControlViewController *view = &s.view();
        s.widget().close();
        QVERIFY(!view->isRestartPending() && !view->isRemoteControlActive());
        QVERIFY(!s.window->isRemoteControlActive());
        QVERIFY(!s.h.manager->isStreaming(s.h.computer.id));
        QVERIFY(SettingsFiles::openStandard()->contains(
            RemoteControlWindowController::geometryKey(s.h.computer.id)));
        QTRY_VERIFY(!s.window);
        QCOMPARE(s.calls("startContinuousStreaming"), 1);
        QStringList lines;
        for (const LogLines::Line &line : LogLines::all())
            if (line.message.startsWith("Remote control deactivated") ||
                line.message.startsWith("Streaming stop initiated") ||
                line.message.startsWith("RemoteControlWindowController"))
                lines << line.category + " " + line.message;
        QCOMPARE(lines,
                 (QStringList{"CONNECT Remote control deactivated for Studio - window closing",
                              "SCREEN Streaming stop initiated for Studio",
                              "MEMORY RemoteControlWindowController resources cleaned up",
                              "MEMORY RemoteControlWindowController resources cleaned up",
                              "MEMORY RemoteControlWindowController deallocated"}));
    }

    void furtherActions()
    {
        Session s;
        QVERIFY(s.open());
        s.view().captureScreen();
        QCOMPARE(s.calls("requestScreenCapture"), 1);
        QTRY_COMPARE(s.view().statusText(), QStringLiteral("Updating preview..."));
        s.view().toggleStreaming();
        QCOMPARE(s.calls("stopContinuousStreaming"), 1);
        QCOMPARE(LogLines::count("SCREEN", "Streaming stopped via button"), 1);
        QVERIFY(s.view().isRemoteControlActive()); // toggling leaves it as it is
        QPointer<RemoteControlWindow> widget = &s.widget();
        s.view().disconnect(); // then the window closes and its controller goes
        QTRY_VERIFY(!s.window && !widget);
        QCOMPARE(
            LogLines::count("CONNECT", "Remote control deactivated for Studio - disconnecting"), 1);
    }

    void droppedSessionKeepsTheLastFrame()
    {
        Session s;
        QVERIFY(s.open());
        QVERIFY(s.showFrame(1920, 1080));
        s.h.fake().sendState(NetworkState::failed(104, QStringLiteral("Connection reset")));
        QTRY_COMPARE(s.view().statusText(), QStringLiteral("Disconnected from Studio"));
        QVERIFY(!s.view().currentScreenImage().isNull());
        QVERIFY(s.widget().isVisible());
    }

    void twoWindowsShareTheStream()
    {
        Session s;
        QVERIFY(s.open());
        auto *second = qobject_cast<RemoteControlWindowController *>(
            s.launcher.openRemoteControlWindow(s.h.computer.id));
        QTRY_COMPARE(s.calls("startContinuousStreaming"), 2);
        second->window()->close();
        QVERIFY(!s.h.manager->isStreaming(s.h.computer.id));
        QVERIFY(s.window->isRemoteControlActive());
        QCOMPARE(s.launcher.openRemoteControlWindow(QUuid::createUuid()), nullptr);
    }
};

QTEST_MAIN(RemoteControlWindowTest)
#include "RemoteControlWindowTest.moc"
