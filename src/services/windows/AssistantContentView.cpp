#include "AssistantContentView.h"
#include "AssistantWebView.h"

#include <QLabel>
#include <QStackedLayout>

AssistantContentView::AssistantContentView(QWidget *parent)
    : QWidget(parent), m_layout(new QStackedLayout(this)),
      m_notice(new QLabel(tr("The assistant cannot be shown on this system."), this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_notice->setAlignment(Qt::AlignCenter);
    m_notice->setWordWrap(true);
    m_notice->setMargin(24);
    m_notice->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_layout->addWidget(m_notice);
}

void AssistantContentView::setWebView(AssistantWebView *webView)
{
    m_webView = webView;
    m_layout->addWidget(webView);
    m_layout->setCurrentWidget(webView);
}

void AssistantContentView::showWebView()
{
    if (m_webView)
        m_layout->setCurrentWidget(m_webView);
}

void AssistantContentView::showNotice()
{
    m_layout->setCurrentWidget(m_notice);
}

bool AssistantContentView::isShowingNotice() const
{
    return m_layout->currentWidget() == m_notice;
}
