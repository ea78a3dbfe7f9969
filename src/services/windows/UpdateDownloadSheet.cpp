#include "UpdateDownloadSheet.h"
#include "DiskImageDownloadHostView.h"
#include "DiskImageDownloadSession.h"
#include "DownloadProgressView.h"

#include "platform/WebHosts.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

UpdateDownloadSheet::UpdateDownloadSheet(const UpdateDownloadPresentation &presentation,
                                         QWidget *parent)
    : QDialog(parent, Qt::Sheet), m_presentation(presentation),
      m_session(new DiskImageDownloadSession(this)),
      m_host(new DiskImageDownloadHostView(m_session, this)),
      m_choiceOrProgress(new QStackedWidget(this)),
      m_progress(new DownloadProgressView(m_session, this)),
      m_download(new QPushButton(tr("Download directly in the app"), this)),
      m_cancelDownload(new QPushButton(tr("Cancel Download"), this))
{
    setWindowModality(Qt::WindowModal);
    setWindowTitle(tr("Update Available"));
    setMinimumWidth(420);

    auto *title = new QLabel(tr("Update Available"), this);
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.4);
    titleFont.setBold(true);
    title->setFont(titleFont);
    auto *version =
        new QLabel(tr("Version %1 is ready to download.").arg(presentation.info.version), this);
    version->setWordWrap(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->addWidget(title);
    layout->addWidget(version);
    if (presentation.info.releaseNotes) {
        auto *heading = new QLabel(tr("Release Notes"), this);
        QFont headline = heading->font();
        headline.setBold(true);
        heading->setFont(headline);
        auto *notes = new QTextBrowser(this);
        notes->setPlainText(*presentation.info.releaseNotes);
        notes->setMaximumHeight(140);
        notes->document()->setDocumentMargin(8);
        notes->setStyleSheet(QStringLiteral("QTextBrowser { border-radius: 6px; }"));
        notes->setFocusPolicy(Qt::ClickFocus);
        layout->addWidget(heading);
        layout->addWidget(notes);
    }
    layout->addWidget(m_host);

    auto *choice = new QWidget(this);
    auto *choiceLayout = new QVBoxLayout(choice);
    choiceLayout->setContentsMargins(0, 8, 0, 0);
    choiceLayout->addWidget(new QLabel(tr("Choose how to get the installer."), choice));
    auto *openSite = new QPushButton(tr("Open %1").arg(WebHosts::webDomain()), choice);
    auto *cancel = new QPushButton(tr("Cancel"), choice);
    auto *choiceButtons = new QHBoxLayout;
    choiceButtons->addWidget(cancel);
    choiceButtons->addStretch();
    choiceButtons->addWidget(openSite);
    choiceButtons->addWidget(m_download);
    choiceLayout->addLayout(choiceButtons);
    m_download->setDefault(true);
    m_download->setAutoDefault(true);

    auto *progressPage = new QWidget(this);
    auto *progressLayout = new QVBoxLayout(progressPage);
    progressLayout->setContentsMargins(0, 8, 0, 0);
    progressLayout->addWidget(m_progress);
    auto *cancelRow = new QHBoxLayout;
    cancelRow->addStretch();
    cancelRow->addWidget(m_cancelDownload);
    progressLayout->addLayout(cancelRow);

    m_choiceOrProgress->addWidget(choice);
    m_choiceOrProgress->addWidget(progressPage);
    layout->addWidget(m_choiceOrProgress);

    connect(m_download, &QPushButton::clicked, this, &UpdateDownloadSheet::startInAppDownload);
    connect(openSite, &QPushButton::clicked, this, [] {
        if (const std::optional<QUrl> site = WebHosts::webAddress())
            QDesktopServices::openUrl(*site);
    });
    // Escape rejects the dialog, which is what "Cancel" does.
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_cancelDownload, &QPushButton::clicked, m_session, &DiskImageDownloadSession::cancel);
    connect(m_session, &DiskImageDownloadSession::phaseChanged, this,
            &UpdateDownloadSheet::refreshCancelDownload);
    m_progress->setOnClose([this] { accept(); });
    refreshCancelDownload();
    m_download->setFocus();
}

UpdateDownloadSheet::~UpdateDownloadSheet() = default;

void UpdateDownloadSheet::startInAppDownload()
{
    m_userStartedInAppDownload = true;
    m_choiceOrProgress->setCurrentIndex(1);
    m_session->start(m_presentation.fileURL);
    m_cancelDownload->setFocus();
}

void UpdateDownloadSheet::refreshCancelDownload()
{
    const bool active = m_session->phase().isActive();
    m_cancelDownload->setVisible(active);
    m_cancelDownload->setDefault(active);
}
