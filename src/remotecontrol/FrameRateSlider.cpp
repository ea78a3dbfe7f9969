#include "FrameRateSlider.h"

#include "FrameRateScale.h"

FrameRateSlider::FrameRateSlider(QWidget *parent) : QSlider(Qt::Horizontal, parent)
{
    setRange(0, FrameRateScale::maximumPosition);
    setSingleStep(FrameRateScale::tickInterval);
    setPageStep(FrameRateScale::tickInterval);
    setTickInterval(FrameRateScale::tickInterval);
    setTickPosition(QSlider::TicksBelow);
    setValue(FrameRateScale::initialPosition);
    setTracking(false);
    setFocusPolicy(Qt::NoFocus);
    setFixedWidth(120);
    setAccessibleName(tr("Frame rate"));
    setToolTip(tr("Frames per second of the remote screen"));
    connect(this, &QAbstractSlider::actionTriggered, this, &FrameRateSlider::snapToMark);
}

double FrameRateSlider::frameRate() const
{
    return FrameRateScale::value(value());
}

void FrameRateSlider::mouseReleaseEvent(QMouseEvent *event)
{
    // The release of a drag arrives in snapToMark as a move with the handle already up.
    m_endingDrag = true;
    QSlider::mouseReleaseEvent(event);
    m_endingDrag = false;
}

void FrameRateSlider::snapToMark(int action)
{
    // The position is already moved and the value not yet: a drag lands on the nearest
    // mark, steps, pages and wheel turns on the next one in their direction.
    const bool drag = action == SliderMove && (isSliderDown() || m_endingDrag);
    setSliderPosition(FrameRateScale::snapped(sliderPosition(), value(), !drag));
}
