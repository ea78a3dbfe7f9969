#pragma once

#include <QPointer>
#include <QWidget>

class RemoteControlViewController;

// The content view of the remote-control window. It holds the keyboard focus and hands every
// key press and release to its view controller: Tab never moves the focus, and shortcuts of
// the console never take a key from the remote computer.
class RemoteControlView : public QWidget {
    Q_OBJECT

public:
    explicit RemoteControlView(RemoteControlViewController *viewController,
                               QWidget *parent = nullptr);

protected:
    bool event(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    QPointer<RemoteControlViewController> m_viewController;
};
