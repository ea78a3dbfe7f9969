#pragma once

#include <QWidget>

class AssistantWebView;
class QLabel;
class QStackedLayout;

// The panel's content: the web view filling it, or, when the web engine cannot run here, one
// plain sentence saying so.
class AssistantContentView : public QWidget {
    Q_OBJECT

public:
    explicit AssistantContentView(QWidget *parent = nullptr);

    // Takes `webView` as a child; none until the web engine is known to run here.
    void setWebView(AssistantWebView *webView);
    void showWebView();
    void showNotice();
    bool isShowingNotice() const;

private:
    QStackedLayout *m_layout;
    QLabel *m_notice;
    AssistantWebView *m_webView = nullptr;
};
