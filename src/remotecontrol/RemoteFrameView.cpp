#include "RemoteFrameView.h"

#include "FrameScaler.h"
#include "RemoteControlViewController.h"

#include <QMouseEvent>
#include <QPainter>

RemoteFrameView::RemoteFrameView(RemoteControlViewController *controller, QWidget *parent)
    : QWidget(parent), m_controller(controller)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(1, 1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(tr("Remote screen"));
    setAccessibleDescription(tr("The screen of the remote computer; pointer and keys act on it"));
}

void RemoteFrameView::setFrame(const QImage &frame)
{
    m_frame = frame;
    scaleFrame();
    update();
}

void RemoteFrameView::clearFrame()
{
    m_frame = QImage();
    m_scaled = QImage();
    update();
}

void RemoteFrameView::fitFrame()
{
    if (!m_frame.isNull() && m_scaled.size() != deviceSize())
        scaleFrame();
}

QSize RemoteFrameView::deviceSize() const
{
    return size() * devicePixelRatio();
}

void RemoteFrameView::scaleFrame()
{
    m_scaled = FrameScaler::scaled(m_frame, deviceSize(), std::move(m_scaled));
}

void RemoteFrameView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    // The frame is already at the device size, so this is a copy, not a scaling.
    if (m_scaled.isNull() || m_scaled.size() != deviceSize())
        painter.fillRect(event->rect(), Qt::black);
    if (!m_scaled.isNull())
        painter.drawImage(QRectF(QPointF(), QSizeF(m_scaled.size()) / devicePixelRatio()),
                          m_scaled);
}

void RemoteFrameView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitFrame();
}

void RemoteFrameView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_controller)
        m_controller->mouseMoved(event->position(), event->buttons());
    event->accept();
}

void RemoteFrameView::mousePressEvent(QMouseEvent *event)
{
    if (m_controller)
        m_controller->mouseButton(event->position(), event->button(), true);
    event->accept();
}

void RemoteFrameView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_controller)
        m_controller->mouseButton(event->position(), event->button(), false);
    event->accept();
}

void RemoteFrameView::wheelEvent(QWheelEvent *event)
{
    // The session has no wheel message: the wheel acts on nothing, here or remotely.
    event->accept();
}
