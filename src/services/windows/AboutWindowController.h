#pragma once

#include <QObject>

class AboutView;
class AlertPresenter;
class QWidget;

// The About window: one per process, made on first use, 580 × 400 and centred when made;
// closing only hides it, so it comes back as it was. Main thread only.
class AboutWindowController : public QObject {
    Q_OBJECT

public:
    static constexpr int windowWidth = 580;
    static constexpr int windowHeight = 400;

    // The one window of the process, made on first use; deleted when the application's event
    // loop ends. Needs the application object.
    static AboutWindowController &shared();

    // `alerts` null: the presenter the console installed.
    explicit AboutWindowController(AlertPresenter *alerts = nullptr, QObject *parent = nullptr);
    ~AboutWindowController() override;

    // What "About Telvane" does: shows the window, brings it to the front and activates it.
    void showWindow();

    QWidget *window() const { return m_window; }
    AboutView *view() const { return m_view; }

private:
    QWidget *m_window;
    AboutView *m_view;
};
