// The launch ripple on the offscreen platform: its sizes, the once-rule, the overlay's window
// flags and geometry. The skip without a compositing manager and the click through the overlay
// need a real X server: LaunchOverlayClickThroughTest.
#include "app/CompositingManagerCheck.h"
#include "app/LaunchAnimationMetrics.h"
#include "app/LaunchAnimationOverlay.h"
#include "app/LaunchAnimationPresenter.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <cmath>

namespace {

void pretendCompositing(LaunchAnimationPresenter &presenter)
{
    presenter.windowController().setCompositingProbe(
        [](QObject *, const CompositingManagerCheck::Answer &answer) { answer({}); });
}

} // namespace

class LaunchAnimationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void metrics_data()
    {
        QTest::addColumn<qreal>("side");
        QTest::addColumn<qreal>("ring");
        QTest::addColumn<qreal>("stroke");
        QTest::newRow("500") << 500.0 << 140.0 << 3.0;
        QTest::newRow("1000") << 1000.0 << 240.0 << 4.5;
        QTest::newRow("2000") << 2000.0 << 480.0 << 9.0;
        QTest::newRow("1") << 1.0 << 140.0 << 3.0;
        QTest::newRow("0") << 0.0 << 140.0 << 3.0;
        QTest::newRow("negative") << -20.0 << 140.0 << 3.0;
        QTest::newRow("not a number") << qreal(NAN) << 140.0 << 3.0;
    }

    void metrics()
    {
        QFETCH(qreal, side);
        QFETCH(qreal, ring);
        QFETCH(qreal, stroke);
        const LaunchAnimationMetrics metrics = LaunchAnimationMetrics::forShorterSide(side);
        QCOMPARE(metrics.ringDiameter, ring);
        QCOMPARE(metrics.strokeWidth, stroke);
        QCOMPARE(metrics.expansionScale, 3.6);
        // The shorter side decides.
        if (side > 1)
            QCOMPARE(LaunchAnimationMetrics::forScreenSize({side * 3, side}).ringDiameter, ring);
    }

    void easeOutIsTheCubicBezier()
    {
        // cubic-bezier(0, 0, 0.58, 1) at half time, solved numerically.
        const QEasingCurve curve = LaunchAnimationMetrics::easeOut();
        QVERIFY(std::abs(curve.valueForProgress(0.5) - 0.68464) < 1e-3);
        QCOMPARE(curve.valueForProgress(1), 1.0);
    }

    void x11ScreenNumbers_data()
    {
        QTest::addColumn<QByteArray>("display");
        QTest::addColumn<int>("screen");
        QTest::newRow("plain") << QByteArray(":0") << 0;
        QTest::newRow("screen") << QByteArray(":1.2") << 2;
        QTest::newRow("host") << QByteArray("host.example:0.1") << 1;
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("garbage") << QByteArray(":0.x") << 0;
    }

    void x11ScreenNumbers()
    {
        QFETCH(QByteArray, display);
        QFETCH(int, screen);
        QCOMPARE(CompositingManagerCheck::x11ScreenNumber(display), screen);
    }

    void playsOnceOverTheScreen()
    {
        QMainWindow window;
        window.show();
        auto *presenter = new LaunchAnimationPresenter(&window);
        pretendCompositing(*presenter);
        QSignalSpy shown(&presenter->windowController(),
                         &LaunchAnimationWindowController::overlayShown);

        presenter->setAppReady(true);
        QVERIFY(presenter->isPlaying());
        QVERIFY(presenter->hasPlayedThisSession());
        QTRY_COMPARE(shown.count(), 1);
        const QPointer<LaunchAnimationOverlay> overlay = presenter->windowController().overlay();
        QVERIFY(overlay && overlay->isVisible());
        for (const Qt::WindowType flag :
             {Qt::Tool, Qt::FramelessWindowHint, Qt::WindowStaysOnTopHint,
              Qt::WindowTransparentForInput, Qt::WindowDoesNotAcceptFocus})
            QVERIFY(overlay->windowFlags().testFlag(flag));
        QVERIFY(overlay->testAttribute(Qt::WA_ShowWithoutActivating));
        QVERIFY(overlay->testAttribute(Qt::WA_TranslucentBackground));
        QCOMPARE(overlay->geometry(), window.screen()->availableGeometry());

        // Ready again while playing: nothing new.
        presenter->setAppReady(false);
        presenter->setAppReady(true);
        QTRY_VERIFY(!presenter->isPlaying());
        QVERIFY(!overlay || !overlay->isVisible());
        QTRY_VERIFY(!overlay);
        // Ready again after it played: nothing either.
        presenter->setAppReady(true);
        QTest::qWait(50);
        QCOMPARE(shown.count(), 1);
        QVERIFY(!presenter->isPlaying());

        // A new main window's presenter plays again.
        LaunchAnimationPresenter second(&window);
        second.setParent(nullptr);
        pretendCompositing(second);
        QSignalSpy secondShown(&second.windowController(),
                               &LaunchAnimationWindowController::overlayShown);
        second.setAppReady(true);
        QTRY_COMPARE(secondShown.count(), 1);
        QTRY_VERIFY(!second.isPlaying());
    }

    void anUnpluggedScreenEndsIt()
    {
        QMainWindow window;
        LaunchAnimationPresenter presenter(&window);
        presenter.setParent(nullptr);
        pretendCompositing(presenter);
        presenter.setAppReady(true);
        QTRY_VERIFY(presenter.windowController().overlay());
        const QPointer<LaunchAnimationOverlay> overlay = presenter.windowController().overlay();
        Q_EMIT qApp->screenRemoved(overlay->screen());
        QVERIFY(!presenter.isPlaying());
        QTRY_VERIFY(!overlay);
    }
};

QTEST_MAIN(LaunchAnimationTest)
#include "LaunchAnimationTest.moc"
