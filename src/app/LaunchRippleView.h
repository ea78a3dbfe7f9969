#pragma once

#include "LaunchAnimationMetrics.h"

#include <QWidget>

class QAbstractAnimation;
class QParallelAnimationGroup;

// The ripple itself: the logo at the centre scaling up and then fading, and a ring growing out
// of it. It only draws; the overlay decides when it is shown and when it is over.
class LaunchRippleView : public QWidget {
    Q_OBJECT

public:
    explicit LaunchRippleView(QWidget *parent = nullptr);

    // Starts the movements from their beginning (the overlay calls it when it appears).
    void start();
    // The movements as one group; the screenshots pause it at chosen moments.
    QAbstractAnimation *animation() const;

    // Sized by the view, which covers the screen.
    LaunchAnimationMetrics metrics() const;
    qreal logoScale() const { return m_logoScale; }
    qreal logoOpacity() const { return m_logoOpacity; }
    qreal ringScale() const { return m_ringScale; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QParallelAnimationGroup *m_animation;
    qreal m_logoScale = LaunchAnimationMetrics::logoStartScale;
    qreal m_logoOpacity = 1;
    qreal m_ringScale = 1;
};
