#pragma once

#include <QSlider>

// The frame-rate slider of the remote-control window, on FrameRateScale's positions. It
// reports a new value once, when a drag ends (no tracking), and every change a user makes
// ends on a mark. It takes no keyboard focus: keys belong to the remote computer.
class FrameRateSlider : public QSlider {
    Q_OBJECT

public:
    explicit FrameRateSlider(QWidget *parent = nullptr);

    // Frames per second at the current value.
    double frameRate() const;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void snapToMark(int action);

    bool m_endingDrag = false;
};
