#pragma once

#include "CompositingManagerCheck.h"
#include "LaunchAnimationOverlay.h"

#include <QObject>
#include <QPointer>
#include <functional>

class QScreen;
class QWidget;

// Puts the launch overlay on a screen and takes it away again: the screen of the active window,
// else the main window's, else the primary screen. Where no compositing manager runs the
// overlay would be a black sheet, so then nothing is shown, one log line says why and the
// completion runs at once. The completion always runs exactly once per `show`, also when the
// screen goes away while the ripple plays.
class LaunchAnimationWindowController : public QObject {
    Q_OBJECT

public:
    // Asks whether a compositing manager runs; tests answer for the window system.
    using CompositingProbe = std::function<void(QObject *context, CompositingManagerCheck::Answer)>;

    explicit LaunchAnimationWindowController(QObject *parent = nullptr);
    ~LaunchAnimationWindowController() override;

    void setCompositingProbe(CompositingProbe probe) { m_probe = std::move(probe); }

    // `mainWindow` may be null. A `show` while the overlay is up is ignored.
    void show(QWidget *mainWindow, std::function<void()> completion);

    // The overlay while it is up; null otherwise.
    LaunchAnimationOverlay *overlay() const { return m_overlay; }

    static QScreen *screenFor(QWidget *mainWindow);

Q_SIGNALS:
    // The overlay has just been shown (screenshots and tests take their pictures from here).
    void overlayShown(LaunchAnimationOverlay *overlay);

private:
    void showOn(QScreen *screen, const QString &whyNot);
    void skip(const QString &reason);
    void finish();

    CompositingProbe m_probe;
    QPointer<LaunchAnimationOverlay> m_overlay;
    QPointer<QScreen> m_screen;
    std::function<void()> m_completion;
    bool m_busy = false;
};
