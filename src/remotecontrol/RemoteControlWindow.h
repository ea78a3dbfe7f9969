#pragma once

#include <QRect>
#include <QSize>
#include <QWidget>

class RemoteControlWindowController;

// The top-level remote-control window (no parent). It forwards its close, its resizes and
// its activation to its window controller and tells the user's resizes from the code's own.
class RemoteControlWindow : public QWidget {
    Q_OBJECT

public:
    explicit RemoteControlWindow(RemoteControlWindowController *controller);

    // The controller is going away: nothing is forwarded any more.
    void detach() { m_controller = nullptr; }
    bool isClosed() const { return m_closed; }

    // Resizes the content area (and sets its minimum when given) by the code's own decision:
    // the resize events this causes are not taken for the user's.
    void resizeContent(const QSize &size, const QSize &minimum = {});
    // The area of the window's screen without panels and docks; the primary screen's when it
    // has none yet, 1920 x 1080 without any screen.
    QRect visibleGeometry() const;
    QSize visibleArea() const { return visibleGeometry().size(); }

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    RemoteControlWindowController *m_controller;
    bool m_closed = false;
    bool m_resizingByCode = false;
    QSize m_expectedSize; // the size the code asked for, until the window system confirms it
};
