#include "DownloadProgressView.h"
#include "DiskImageDownloadSession.h"
#include "FileRevealer.h"

#include "services/DownloadProgressContent.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// The platform's "checkmark.circle.fill" and "exclamationmark.triangle.fill", in their colours.
QPixmap symbolPixmap(DownloadProgressContent::Symbol symbol, const QWidget *widget)
{
    const bool success = symbol == DownloadProgressContent::Symbol::success;
    const QIcon icon = QIcon::fromTheme(
        success ? QStringLiteral("emblem-ok-symbolic") : QStringLiteral("dialog-warning-symbolic"),
        widget->style()->standardIcon(success ? QStyle::SP_DialogApplyButton
                                              : QStyle::SP_MessageBoxWarning));
    QPixmap pixmap = icon.pixmap(22, 22);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), success ? QColor(52, 199, 89) : QColor(255, 149, 0));
    return pixmap;
}

} // namespace

DownloadProgressView::DownloadProgressView(DiskImageDownloadSession *session, QWidget *parent)
    : QWidget(parent), m_session(session), m_bar(new QProgressBar(this)),
      m_symbol(new QLabel(this)), m_title(new QLabel(this)), m_detail(new QLabel(this)),
      m_showInFinder(new QPushButton(tr("Show in Finder"), this)),
      m_retry(new QPushButton(tr("Retry"), this)), m_close(new QPushButton(tr("Close"), this))
{
    m_bar->setTextVisible(false);
    m_bar->setRange(0, 1000);
    m_detail->setWordWrap(true);
    m_detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont caption = m_detail->font();
    caption.setPointSizeF(caption.pointSizeF() * 0.85);
    m_detail->setFont(caption);

    auto *titleRow = new QHBoxLayout;
    titleRow->addWidget(m_symbol);
    titleRow->addWidget(m_title, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_showInFinder);
    buttons->addWidget(m_retry);
    buttons->addWidget(m_close);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_bar);
    layout->addLayout(titleRow);
    layout->addWidget(m_detail);
    layout->addLayout(buttons);

    connect(m_showInFinder, &QPushButton::clicked, this, [this] {
        const QUrl file = m_session->phase().fileURL();
        if (m_onShowInFinder)
            m_onShowInFinder(file);
        else
            FileRevealer::reveal(file);
    });
    connect(m_retry, &QPushButton::clicked, m_session, &DiskImageDownloadSession::retry);
    connect(m_close, &QPushButton::clicked, this, [this] {
        if (m_onClose)
            m_onClose();
    });
    connect(session, &DiskImageDownloadSession::phaseChanged, this, &DownloadProgressView::refresh);
    connect(session, &DiskImageDownloadSession::progressChanged, this,
            &DownloadProgressView::refresh);
    refresh();
}

void DownloadProgressView::refresh()
{
    using Content = DownloadProgressContent;
    const Content content = Content::forPhase(m_session->phase(), m_session->progress());
    m_bar->setVisible(content.bar != Content::Bar::none);
    if (content.bar == Content::Bar::indeterminate) {
        m_bar->setRange(0, 0);
    } else {
        m_bar->setRange(0, 1000);
        m_bar->setValue(int(std::clamp(m_session->progress(), 0.0, 1.0) * 1000));
    }
    m_symbol->setVisible(content.symbol != Content::Symbol::none);
    if (content.symbol != Content::Symbol::none)
        m_symbol->setPixmap(symbolPixmap(content.symbol, this));
    m_title->setText(content.title);
    m_detail->setText(content.detail);
    m_detail->setVisible(!content.detail.isEmpty());
    const bool hadFocus = m_showInFinder->hasFocus() || m_retry->hasFocus() || m_close->hasFocus();
    m_showInFinder->setVisible(content.showsShowInFinder);
    m_retry->setVisible(content.showsRetry);
    m_close->setVisible(content.showsClose);
    // The result's first button takes the keyboard, so Return acts on it at once.
    if (content.showsShowInFinder)
        m_showInFinder->setDefault(true);
    else if (content.showsRetry)
        m_retry->setDefault(true);
    if (!hadFocus && isVisible()) {
        if (content.showsShowInFinder)
            m_showInFinder->setFocus();
        else if (content.showsRetry)
            m_retry->setFocus();
        else if (content.showsClose)
            m_close->setFocus();
    }
}
