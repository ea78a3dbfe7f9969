#pragma once

#include <QWebEngineView>

// The assistant's web view: no context menu, and it reports the user's mouse and key presses
// on the page, which tell a clicked link from a navigation a script started.
class AssistantWebView : public QWebEngineView {
    Q_OBJECT

public:
    explicit AssistantWebView(QWidget *parent = nullptr);

Q_SIGNALS:
    void userInput();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
};
