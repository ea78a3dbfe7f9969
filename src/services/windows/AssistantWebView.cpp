#include "AssistantWebView.h"

#include <QChildEvent>
#include <QKeyEvent>

AssistantWebView::AssistantWebView(QWidget *parent) : QWebEngineView(parent)
{
    setContextMenuPolicy(Qt::NoContextMenu);
    setAccessibleName(tr("Assistant chat"));
    for (QObject *child : children()) {
        if (child->isWidgetType())
            child->installEventFilter(this);
    }
}

bool AssistantWebView::event(QEvent *event)
{
    // The page is drawn and gets its input in a child widget the engine makes (and makes anew
    // after its render process ended), so watch each child as it arrives.
    if (event->type() == QEvent::ChildAdded) {
        QObject *child = static_cast<QChildEvent *>(event)->child();
        if (child->isWidgetType())
            child->installEventFilter(this);
    }
    return QWebEngineView::event(event);
}

bool AssistantWebView::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::TouchEnd:
        Q_EMIT userInput();
        break;
    case QEvent::KeyPress:
        // The browser engine does not count Escape as the user's activation either.
        if (static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape)
            Q_EMIT userInput();
        break;
    default:
        break;
    }
    return QWebEngineView::eventFilter(watched, event);
}
