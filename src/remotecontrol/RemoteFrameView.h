#pragma once

#include <QImage>
#include <QPointer>
#include <QWidget>

class RemoteControlViewController;

// The image view of the remote-control window: the remote screen stretched over the whole
// view on both axes (no letterbox), black until the first frame. A frame is scaled once to
// the view's device pixels when it arrives or the view changes size, never in a paint.
// Pointer events go to the view controller; the view takes no keyboard focus.
class RemoteFrameView : public QWidget {
    Q_OBJECT

public:
    explicit RemoteFrameView(RemoteControlViewController *controller, QWidget *parent = nullptr);

    void setFrame(const QImage &frame);
    void clearFrame();
    bool hasFrame() const { return !m_frame.isNull(); }
    // The frame as drawn: the view's size in device pixels.
    const QImage &scaledFrame() const { return m_scaled; }
    // Scales the frame to the view's current size when that changed.
    void fitFrame();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void scaleFrame();
    QSize deviceSize() const;

    QPointer<RemoteControlViewController> m_controller;
    QImage m_frame;
    QImage m_scaled;
};
