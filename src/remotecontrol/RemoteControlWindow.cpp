#include "RemoteControlWindow.h"

#include "RemoteControlWindowController.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>

RemoteControlWindow::RemoteControlWindow(RemoteControlWindowController *controller)
    : QWidget(nullptr), m_controller(controller)
{
}

void RemoteControlWindow::resizeContent(const QSize &size, const QSize &minimum)
{
    m_resizingByCode = true;
    if (minimum.isValid())
        setMinimumSize(minimum);
    m_expectedSize = size;
    resize(size);
    m_resizingByCode = false;
}

QRect RemoteControlWindow::visibleGeometry() const
{
    QScreen *screen = this->screen();
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(0, 0, 1920, 1080);
}

void RemoteControlWindow::closeEvent(QCloseEvent *event)
{
    // Closing is never refused; the controller stops the stream on the way.
    if (!m_closed && m_controller) {
        m_closed = true;
        m_controller->windowWillClose();
    }
    m_closed = true;
    event->accept();
}

void RemoteControlWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (!m_controller)
        return;
    // Only the window system reports a user's drag (a spontaneous event); showing, restoring
    // the saved geometry and the code's own resizes are not, and the window system's
    // confirmation of a size the code asked for is not the user's either.
    const bool confirmsCode = event->size() == m_expectedSize;
    if (event->spontaneous() && !m_resizingByCode && !confirmsCode)
        m_controller->windowResizedByUser();
    if (!m_resizingByCode && event->spontaneous())
        m_expectedSize = QSize();
    m_controller->windowDidResize();
}

void RemoteControlWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && m_controller)
        m_controller->windowActivationChanged(isActiveWindow());
}
