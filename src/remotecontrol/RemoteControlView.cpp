#include "RemoteControlView.h"

#include "RemoteControlViewController.h"

#include <QKeyEvent>

RemoteControlView::RemoteControlView(RemoteControlViewController *viewController, QWidget *parent)
    : QWidget(parent), m_viewController(viewController)
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Remote control"));
}

bool RemoteControlView::event(QEvent *event)
{
    // Accepting the override makes the key a plain key press for this view.
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

bool RemoteControlView::focusNextPrevChild(bool)
{
    return false;
}

void RemoteControlView::keyPressEvent(QKeyEvent *event)
{
    if (m_viewController)
        m_viewController->keyEvent(*event, true);
    event->accept();
}

void RemoteControlView::keyReleaseEvent(QKeyEvent *event)
{
    if (m_viewController)
        m_viewController->keyEvent(*event, false);
    event->accept();
}
