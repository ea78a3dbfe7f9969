#pragma once

#include <QTimer>
#include <QWidget>

class LaunchRippleView;

// The window the ripple plays in: frameless, translucent, above everything, covering a screen's
// available area. It never takes focus and lets every click through to the windows below.
// It announces `completed` once, 1.3 seconds after it appears.
class LaunchAnimationOverlay : public QWidget {
    Q_OBJECT

public:
    explicit LaunchAnimationOverlay(const QRect &area);

    LaunchRippleView *ripple() const { return m_ripple; }

Q_SIGNALS:
    void completed();

protected:
    void showEvent(QShowEvent *event) override;

private:
    LaunchRippleView *m_ripple;
    QTimer m_completion;
};
