#include "LaunchAnimationWindowController.h"

#include "LaunchAnimationOverlay.h"
#include "model/LogManager.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

LaunchAnimationWindowController::LaunchAnimationWindowController(QObject *parent)
    : QObject(parent), m_probe(&CompositingManagerCheck::ask)
{
}

LaunchAnimationWindowController::~LaunchAnimationWindowController()
{
    delete m_overlay.data();
}

QScreen *LaunchAnimationWindowController::screenFor(QWidget *mainWindow)
{
    if (QWidget *active = QApplication::activeWindow(); active && active->screen())
        return active->screen();
    if (mainWindow && mainWindow->screen())
        return mainWindow->screen();
    return QGuiApplication::primaryScreen();
}

void LaunchAnimationWindowController::show(QWidget *mainWindow, std::function<void()> completion)
{
    if (m_busy)
        return;
    m_busy = true;
    m_completion = std::move(completion);

    QScreen *screen = screenFor(mainWindow);
    if (!screen)
        return skip(QStringLiteral("there is no screen"));
    m_screen = screen;
    m_probe(this, [this](const QString &whyNot) { showOn(m_screen, whyNot); });
}

void LaunchAnimationWindowController::showOn(QScreen *screen, const QString &whyNot)
{
    if (!whyNot.isEmpty())
        return skip(whyNot);
    if (!screen)
        return skip(QStringLiteral("the screen went away"));

    m_overlay = new LaunchAnimationOverlay(screen->availableGeometry());
    m_overlay->setScreen(screen);
    connect(m_overlay, &LaunchAnimationOverlay::completed, this,
            &LaunchAnimationWindowController::finish);
    // An unplugged screen takes its windows' geometry with it: end there rather than jump.
    connect(qApp, &QGuiApplication::screenRemoved, this, [this](QScreen *removed) {
        if (removed == m_screen)
            finish();
    });
    m_overlay->show();
    Q_EMIT overlayShown(m_overlay);
}

void LaunchAnimationWindowController::skip(const QString &reason)
{
    LogManager::shared().log(QStringLiteral("Launch animation skipped: %1").arg(reason),
                             QStringLiteral("INFO"));
    finish();
}

void LaunchAnimationWindowController::finish()
{
    if (!m_busy)
        return;
    m_busy = false;
    disconnect(qApp, &QGuiApplication::screenRemoved, this, nullptr);
    if (m_overlay) {
        m_overlay->hide();
        m_overlay->deleteLater();
        m_overlay = nullptr;
    }
    m_screen = nullptr;
    if (const std::function<void()> completion = std::exchange(m_completion, {}))
        completion();
}
