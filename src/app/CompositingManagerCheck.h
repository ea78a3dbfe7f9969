#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

// Asks whether a compositing manager runs, the condition for a translucent window to look
// translucent (without one it is drawn black). On X11 one runs when the selection
// "_NET_WM_CM_S<screen>" has an owner. The X server is asked without waiting: the replies are
// collected from the event loop. On Wayland a screen-wide overlay cannot be placed, and other
// platforms (offscreen, minimal) draw for no one, so there the answer is always no.
class CompositingManagerCheck : public QObject {
    Q_OBJECT

public:
    // Called once from the event loop: an empty reason means a compositing manager runs.
    using Answer = std::function<void(const QString &whyNot)>;

    // Answers through `answer` unless `context` is gone by then.
    static void ask(QObject *context, Answer answer);

    // The X screen number of a DISPLAY value (":0", "host:1.2" -> 2); 0 when it names none.
    static int x11ScreenNumber(QByteArrayView display);

private:
    CompositingManagerCheck(QObject *context, Answer answer);
    void start();
    void poll();
    void finish(const QString &whyNot);

    Answer m_answer;
    QTimer m_poll;
    int m_polls = 0;
    unsigned m_atomRequest = 0;
    unsigned m_ownerRequest = 0;
};
