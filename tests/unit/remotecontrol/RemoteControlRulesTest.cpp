// The remote-control window's rules without a window: coordinate mapping, key and button
// translation, the sizing rules, frame scaling and the frame-rate scale.
#include "LogLines.h"
#include "input/MacKeyCodeTable.h"
#include "remotecontrol/FrameRateScale.h"
#include "remotecontrol/FrameScaler.h"
#include "remotecontrol/RemoteCoordinateMapping.h"
#include "remotecontrol/RemoteKeyTranslator.h"
#include "remotecontrol/RemoteWindowSizing.h"

#include <QTest>
#include <cmath>
#include <limits>

class RemoteControlRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mapping()
    {
        struct Case {
            QPointF position;
            QSizeF view, remote;
            std::optional<QPointF> expected;
        };
        const QSizeF view(1000, 500), remote(2000, 1000);
        const std::optional<QPointF> outside;
        // The remote origin is the bottom left: the top-left pixel is the remote height.
        const Case cases[] = {
            {{0, 0}, view, remote, QPointF(0, 1000)},
            {{999, 0}, view, remote, QPointF(1998, 1000)},
            {{0, 499}, view, remote, QPointF(0, 2)},
            {{999.5, 499.5}, view, remote, QPointF(1999, 1)},
            {{500, 250}, view, remote, QPointF(1000, 500)},
            {{400, 150}, {800, 600}, {1920, 1080}, QPointF(960, 810)}, // stretched
            {{1000, 10}, view, remote, outside},
            {{10, 500}, view, remote, outside},
            {{-0.5, 10}, view, remote, outside}};
        for (const Case &c : cases)
            QCOMPARE(RemoteCoordinateMapping::map(c.position, c.view, c.remote), c.expected);
    }

    void invalidConversionsLogAndGiveZero()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double inf = std::numeric_limits<double>::infinity();
        LogLines::clear();
        QCOMPARE(RemoteCoordinateMapping::convert(640, 1280, 0), 0.0);
        QCOMPARE(RemoteCoordinateMapping::convert(nan, 0.5, inf), 0.0);
        QCOMPARE(RemoteCoordinateMapping::convert(1, 0.5, -3), 0.0);
        const QString parameters = QStringLiteral("Invalid coordinate conversion parameters: ");
        QCOMPARE(LogLines::count(
                     "ERROR", parameters + "clientCoord=640.0, clientSize=1280.0, serverSize=0.0"),
                 1);
        QCOMPARE(LogLines::count("ERROR",
                                 parameters + "clientCoord=nan, clientSize=0.5, serverSize=inf"),
                 1);
        QCOMPARE(LogLines::count("ERROR",
                                 parameters + "clientCoord=1.0, clientSize=0.5, serverSize=-3.0"),
                 1);

        const QList<QPair<double, QString>> numbers{{1280, "1280.0"},
                                                    {0.5, "0.5"},
                                                    {-2, "-2.0"},
                                                    {1e16, "1e+16"},
                                                    {1e15, "1000000000000000.0"},
                                                    {0.0001, "0.0001"},
                                                    {1.5e-5, "1.5e-05"},
                                                    {1.0 / 3, "0.3333333333333333"},
                                                    {-inf, "-inf"},
                                                    {123.25, "123.25"}};
        for (const auto &[value, text] : numbers)
            QCOMPARE(RemoteCoordinateMapping::numberText(value), text);
    }

    void keys()
    {
        struct Case {
            quint32 scanCode;
            int key;
            Qt::KeyboardModifiers modifiers;
            quint32 native;
            std::optional<RemoteKeyTranslator::Stroke> expected;
        };
        using S = RemoteKeyTranslator::Stroke;
        const Qt::KeyboardModifiers none, shift = Qt::ShiftModifier, pad = Qt::KeypadModifier;
        // X keycodes of a PC keyboard: A 38, Q 24, Right 114, F5 71, KP5 84, Insert 118.
        const Case cases[] = {
            {38, Qt::Key_A, none, 0, S{0x00, 0}},
            {38, Qt::Key_A, shift, 0, S{0x00, 0x20000}},
            {38, Qt::Key_A, none, 0x2, S{0x00, 0x10000}}, // Caps Lock on
            {38, Qt::Key_A, Qt::ControlModifier | Qt::MetaModifier, 0, S{0x00, 0x140000}},
            {24, Qt::Key_At, Qt::GroupSwitchModifier, 0, S{0x0C, 0x80000}}, // AltGr
            {24, Qt::Key_Q, Qt::AltModifier, 0, S{0x0C, 0x80000}},
            {114, Qt::Key_Right, pad, 0, S{0x7C, 0xA00000}},
            {71, Qt::Key_F5, none, 0, S{0x60, 0x800000}},
            {84, Qt::Key_5, pad, 0, S{0x57, 0x200000}},
            {118, Qt::Key_Insert, none, 0, S{0x72, 0xC00000}},
            // Without a scan code the Qt key decides, by its US-layout position.
            {0, Qt::Key_Question, shift, 0, S{0x2C, 0x20000}},
            {0, Qt::Key_Enter, pad, 0, S{0x4C, 0x200000}},
            {0, Qt::Key_Eacute, none, 0, std::nullopt}};
        for (const Case &c : cases)
            QCOMPARE(RemoteKeyTranslator::translate(c.scanCode, c.key, c.modifiers, c.native),
                     c.expected);
    }

    void initialResize()
    {
        const auto plan = RemoteWindowSizing::initialResize({2880, 1800}, {1440, 875});
        QVERIFY(plan);
        QCOMPARE(plan->aspectRatio, 1.6);
        QCOMPARE(plan->contentSize, QSizeF(1000, 665));
        QCOMPARE(plan->minimumContentSize, QSizeF(800, 540));
        // A screen narrower than the window would be: 85 % of its width.
        const auto small = RemoteWindowSizing::initialResize({1920, 1080}, {800, 600});
        QCOMPARE(small->contentSize.width(), 680.0);
        QCOMPARE(small->minimumContentSize.width(), 680.0);
        QVERIFY(!RemoteWindowSizing::initialResize({1920, 0}, {1440, 875}));
    }

    void dragRule()
    {
        const QSizeF screen(1920, 1080);
        const auto allowed = [&](QSizeF proposed, QSizeF remote = QSizeF(16, 9)) {
            return RemoteWindowSizing::allowedContentSize(proposed, remote, screen);
        };
        QCOMPARE(qRound(allowed({1400, 700}).width() * 10), 11733); // 1173.3: off by 0.34
        QCOMPARE(allowed({1400, 700}).height(), 700.0);
        QCOMPARE(allowed({1200, 700}), QSizeF(1200, 700)); // off by 0.04: kept
        QCOMPARE(allowed({700, 400}), QSizeF(800, 490));   // the minimum, 800 x 800/A + 40
        QCOMPARE(allowed({1000, 1000}, QSizeF()), QSizeF(1280, 1000)); // 4:3 before a frame
        QCOMPARE(allowed({1900, 1300}).width(), 1920.0); // never wider than the screen
    }

    void frameScaling()
    {
        // A fine checkerboard shrunk by half is an even grey: averaged, not sampled.
        QImage checker(8, 8, QImage::Format_RGB32);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                checker.setPixel(x, y, (x + y) % 2 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
        const QImage half = FrameScaler::scaled(checker, {4, 4});
        QCOMPARE(half.size(), QSize(4, 4));
        QVERIFY(qAbs(qRed(half.pixel(1, 2)) - 128) <= 1);
        QCOMPARE(FrameScaler::scaled(checker, {3, 5}).size(), QSize(3, 5));
        QCOMPARE(FrameScaler::scaled(checker, {8, 8}).cacheKey(), checker.cacheKey());
        QVERIFY(FrameScaler::scaled(checker, {0, 5}).isNull());
    }

    void frameRateScale()
    {
        QCOMPARE(FrameRateScale::value(FrameRateScale::initialPosition), 3.0);
        QCOMPARE(FrameRateScale::value(0), 1.0);
        QCOMPARE(FrameRateScale::value(FrameRateScale::maximumPosition), 30.0);
        QCOMPARE(FrameRateScale::value(29), 1 + 29 / 11.0);
        QCOMPARE(FrameRateScale::text(FrameRateScale::value(29)), QStringLiteral("3 FPS"));
        QCOMPARE(FrameRateScale::text(29.99), QStringLiteral("29 FPS"));
        struct Case {
            int position, previous;
            bool stepwise;
            int expected;
        };
        const Case cases[] = {{51, 22, true, 29},    {80, 22, true, 58},    {0, 22, true, 0},
                              {58, 29, true, 58},    {290, 319, true, 290}, {0, 174, true, 0},
                              {100, 22, false, 87},  {102, 22, false, 116}, {14, 22, false, 0},
                              {318, 290, false, 319}};
        for (const Case &c : cases)
            QCOMPARE(FrameRateScale::snapped(c.position, c.previous, c.stepwise), c.expected);
    }
};

QTEST_GUILESS_MAIN(RemoteControlRulesTest)
#include "RemoteControlRulesTest.moc"
