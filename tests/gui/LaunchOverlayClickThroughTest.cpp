// The launch overlay on a real X server (Xvfb): shown only while a compositing manager
// (xcompmgr) owns its selection, it takes no focus and a real click (xdotool, through the X
// server; a synthetic Qt event would prove nothing) reaches the window below it.
#include "LogLines.h"
#include "app/CompositingManagerCheck.h"
#include "app/LaunchAnimationOverlay.h"
#include "app/LaunchAnimationPresenter.h"

#include <QApplication>
#include <QMainWindow>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <optional>

class LaunchOverlayClickThroughTest : public QObject {
    Q_OBJECT

private:
    QProcess m_compositor;

    // What the check answers now; none when it did not answer in time.
    static std::optional<QString> compositingWhyNot()
    {
        QObject context;
        QString answer;
        bool answered = false;
        CompositingManagerCheck::ask(&context, [&](const QString &whyNot) {
            answer = whyNot;
            answered = true;
        });
        if (!QTest::qWaitFor([&] { return answered; }, 3000))
            return std::nullopt;
        return answer;
    }

    bool startCompositor()
    {
        m_compositor.start(QStringLiteral("xcompmgr"), {});
        return m_compositor.waitForStarted() && QTest::qWaitFor(
                                                    [] {
                                                        const std::optional<QString> whyNot =
                                                            compositingWhyNot();
                                                        return whyNot && whyNot->isEmpty();
                                                    },
                                                    5000);
    }

    static bool runXdotool(const QStringList &arguments)
    {
        QProcess xdotool;
        xdotool.start(QStringLiteral("xdotool"), arguments);
        return xdotool.waitForStarted() &&
               QTest::qWaitFor([&] { return xdotool.state() == QProcess::NotRunning; }, 5000) &&
               xdotool.exitStatus() == QProcess::NormalExit && xdotool.exitCode() == 0;
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("needs an X server (run under tests/run-webengine.sh)");
        for (const char *tool : {"xcompmgr", "xdotool"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                QSKIP(qPrintable(QStringLiteral("%1 is not installed (scripts/setup.sh)")
                                     .arg(QString::fromLatin1(tool))));
        }
    }

    void cleanup()
    {
        if (m_compositor.state() != QProcess::NotRunning) {
            m_compositor.terminate();
            m_compositor.waitForFinished(3000);
        }
    }

    void skippedWithoutACompositingManager()
    {
        QCOMPARE(compositingWhyNot(), QStringLiteral("no compositing manager runs"));
        QMainWindow window;
        window.show();
        LaunchAnimationPresenter presenter(&window);
        presenter.setParent(nullptr);
        QSignalSpy shown(&presenter.windowController(),
                         &LaunchAnimationWindowController::overlayShown);
        LogLines::clear();
        presenter.setAppReady(true);
        QTRY_VERIFY(!presenter.isPlaying());
        QCOMPARE(shown.count(), 0);
        QCOMPARE(
            LogLines::countStartingWith("Launch animation skipped: no compositing manager runs"),
            1);
    }

    void playsWithACompositingManager()
    {
        QVERIFY(startCompositor());
        QMainWindow window;
        window.show();
        LaunchAnimationPresenter presenter(&window);
        presenter.setParent(nullptr);
        QSignalSpy shown(&presenter.windowController(),
                         &LaunchAnimationWindowController::overlayShown);
        presenter.setAppReady(true);
        QTRY_COMPARE(shown.count(), 1);
        QPointer<LaunchAnimationOverlay> overlay = presenter.windowController().overlay();
        QVERIFY(overlay);
        QCOMPARE(overlay->geometry(), overlay->screen()->availableGeometry());
        QTRY_VERIFY_WITH_TIMEOUT(!presenter.isPlaying(), 5000);
        QTRY_VERIFY(!overlay);
    }

    void aClickPassesThroughToTheWindowBelow()
    {
        QVERIFY(startCompositor());
        QMainWindow window;
        auto *button = new QPushButton(QStringLiteral("Below"));
        window.setCentralWidget(button);
        window.setGeometry(80, 80, 300, 200);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QSignalSpy clicked(button, &QPushButton::clicked);

        // The overlay on its own stays up until it is taken away, so the click cannot miss it.
        LaunchAnimationOverlay overlay(window.screen()->availableGeometry());
        overlay.show();
        QVERIFY(QTest::qWaitForWindowExposed(&overlay));
        QTest::qWait(100); // the compositor's first frame
        QVERIFY(!overlay.isActiveWindow());
        QCOMPARE(QApplication::activeWindow(), &window);

        const QPoint target = button->mapToGlobal(button->rect().center());
        QVERIFY(runXdotool({"mousemove", "--sync", QString::number(target.x()),
                            QString::number(target.y()), "click", "1"}));
        QTRY_COMPARE(clicked.count(), 1);
        QVERIFY(overlay.isVisible());
        QCOMPARE(QApplication::activeWindow(), &window);
        QVERIFY(!overlay.isActiveWindow());

        // Translucent: the screen shows the button through the overlay, not a black sheet.
        const QImage screen = window.screen()->grabWindow(0).toImage();
        const QColor seen = screen.pixelColor(target - QPoint(40, 0));
        QVERIFY2(seen.lightness() > 100, qPrintable(seen.name()));
    }
};

QTEST_MAIN(LaunchOverlayClickThroughTest)
#include "LaunchOverlayClickThroughTest.moc"
