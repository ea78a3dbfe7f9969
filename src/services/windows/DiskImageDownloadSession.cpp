#include "DiskImageDownloadSession.h"

#include "model/LogManager.h"
#include "services/DownloadFileNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QWebEngineDownloadRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <algorithm>

DiskImageDownloadSession::DiskImageDownloadSession(QObject *parent) : QObject(parent)
{
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(defaultRequestTimeoutMs);
    connect(&m_deadline, &QTimer::timeout, this, &DiskImageDownloadSession::handleTimeout);
    m_progressSignal.setSingleShot(true);
    m_progressSignal.setInterval(progressIntervalMs);
    connect(&m_progressSignal, &QTimer::timeout, this, [this] {
        if (m_progress != m_lastSignalledProgress)
            setProgress(m_progress, true);
    });
}

DiskImageDownloadSession::~DiskImageDownloadSession()
{
    if (m_activeDownload) {
        const QString destination = m_committedDestination;
        m_activeDownload->disconnect(this);
        m_activeDownload->cancel();
        removePartialFiles(destination);
    }
}

void DiskImageDownloadSession::setRequestTimeout(int milliseconds)
{
    m_deadline.setInterval(milliseconds);
}

void DiskImageDownloadSession::setWebView(QWebEngineView *webView)
{
    if (m_webView && m_webView->page())
        m_webView->page()->profile()->disconnect(this);
    if (!webView) {
        // The host view is going: what runs is left to the engine, which ends it with the view.
        if (m_activeDownload)
            m_activeDownload->disconnect(this);
        m_activeDownload = nullptr;
        m_committedDestination.clear();
        m_webView = nullptr;
        return;
    }
    m_webView = webView;
    connect(webView->page()->profile(), &QWebEngineProfile::downloadRequested, this,
            &DiskImageDownloadSession::handleDownloadRequested);
}

void DiskImageDownloadSession::start(const QUrl &url)
{
    if (m_unavailableReason) {
        m_lastRequestedURL = url;
        fail(tr("The download cannot run here: %1.").arg(*m_unavailableReason));
        return;
    }
    if (!m_webView) {
        fail(tr("Download could not start (internal error)."));
        return;
    }
    m_lastRequestedURL = url;
    if (m_activeDownload) {
        // A restart while one runs: the old one must not keep writing beside the new one.
        const QString destination = m_committedDestination;
        m_activeDownload->disconnect(this);
        m_activeDownload->cancel();
        removePartialFiles(destination);
    }
    forgetActiveDownload();
    m_committedDestination.clear();
    setPhase(Phase::preparing());
    setProgress(0, false);
    m_awaitingDownload = true;
    m_deadline.start();
    LogManager::shared().log(
        QStringLiteral("Installer download started: %1").arg(url.toDisplayString()),
        QStringLiteral("FILE"));
    m_webView->page()->download(url);
}

void DiskImageDownloadSession::retry()
{
    if (m_lastRequestedURL)
        start(*m_lastRequestedURL);
}

void DiskImageDownloadSession::cancel()
{
    m_awaitingDownload = false;
    m_deadline.stop();
    const QString destination = m_committedDestination;
    m_committedDestination.clear();
    if (m_activeDownload &&
        m_activeDownload->state() != QWebEngineDownloadRequest::DownloadCancelled) {
        // The phase follows when the engine reports the download cancelled.
        m_activeDownload->setProperty("telvaneDestination", destination);
        m_activeDownload->cancel();
        return;
    }
    forgetActiveDownload();
    removePartialFiles(destination);
    setPhase(Phase::cancelled());
}

std::optional<QString> DiskImageDownloadSession::downloadsFolder() const
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (folder.isEmpty() || !QDir().mkpath(folder) || !QFileInfo(folder).isDir())
        return std::nullopt;
    // Root passes every permission check, so ask the file system itself.
    QTemporaryFile probe(QDir(folder).filePath(QStringLiteral(".telvane-XXXXXX")));
    if (!probe.open())
        return std::nullopt;
    return folder;
}

void DiskImageDownloadSession::handleDownloadRequested(QWebEngineDownloadRequest *request)
{
    if (!m_webView || request->page() != m_webView->page())
        return; // another page's download, not ours to decide
    if (!m_awaitingDownload || request->state() != QWebEngineDownloadRequest::DownloadRequested) {
        request->cancel();
        return;
    }
    m_awaitingDownload = false;
    m_activeDownload = request;
    setPhase(Phase::downloading());
    m_deadline.start();

    // Everything is decided here: a request not accepted before this handler returns is
    // dropped by the engine.
    const std::optional<QString> folder = downloadsFolder();
    if (!folder) {
        request->disconnect(this);
        request->cancel();
        forgetActiveDownload();
        fail(tr("Could not access your Downloads folder."));
        return;
    }
    const QString name = DownloadFileNames::firstFreeName(
        *folder,
        DownloadFileNames::plainName(request->suggestedFileName(), QStringLiteral("Telvane.dmg")));
    m_committedDestination = QDir(*folder).filePath(name);
    connect(request, &QWebEngineDownloadRequest::stateChanged, this,
            &DiskImageDownloadSession::handleStateChanged);
    connect(request, &QWebEngineDownloadRequest::receivedBytesChanged, this,
            &DiskImageDownloadSession::noteReceivedBytes);
    connect(request, &QWebEngineDownloadRequest::totalBytesChanged, this,
            &DiskImageDownloadSession::noteReceivedBytes);
    request->setDownloadDirectory(*folder);
    request->setDownloadFileName(name);
    request->accept();
}

void DiskImageDownloadSession::noteReceivedBytes()
{
    auto *request = qobject_cast<QWebEngineDownloadRequest *>(sender());
    if (!request || request != m_activeDownload)
        return;
    m_deadline.start();
    const qint64 total = request->totalBytes();
    const double fraction =
        total > 0 ? std::clamp(double(request->receivedBytes()) / double(total), 0.0, 1.0) : 0.0;
    // The bar never goes back within one download.
    setProgress(std::max(fraction, m_progress), true);
}

void DiskImageDownloadSession::handleStateChanged()
{
    auto *request = qobject_cast<QWebEngineDownloadRequest *>(sender());
    if (!request)
        return;
    switch (request->state()) {
    case QWebEngineDownloadRequest::DownloadRequested:
    case QWebEngineDownloadRequest::DownloadInProgress:
        return;
    case QWebEngineDownloadRequest::DownloadCompleted: {
        forgetActiveDownload();
        setProgress(1, false);
        const QString destination = m_committedDestination;
        m_committedDestination.clear();
        if (destination.isEmpty()) {
            fail(tr("Download finished but the file location is unknown."));
            return;
        }
        LogManager::shared().log(QStringLiteral("Installer saved as %1").arg(destination),
                                 QStringLiteral("FILE"));
        setPhase(Phase::finished(QUrl::fromLocalFile(destination)));
        return;
    }
    case QWebEngineDownloadRequest::DownloadCancelled: {
        const QString destination = request->property("telvaneDestination").toString();
        forgetActiveDownload();
        removePartialFiles(destination.isEmpty() ? m_committedDestination : destination);
        m_committedDestination.clear();
        if (m_phase.kind() != Phase::Kind::failed)
            setPhase(Phase::cancelled());
        return;
    }
    case QWebEngineDownloadRequest::DownloadInterrupted: {
        const QString message = request->interruptReasonString();
        forgetActiveDownload();
        fail(message.isEmpty() ? tr("The download was interrupted.") : message);
        return;
    }
    }
}

void DiskImageDownloadSession::handleTimeout()
{
    m_awaitingDownload = false;
    if (m_activeDownload) {
        m_activeDownload->disconnect(this);
        m_activeDownload->cancel();
        forgetActiveDownload();
    }
    fail(tr("The request timed out."));
}

void DiskImageDownloadSession::fail(const QString &message)
{
    m_deadline.stop();
    m_awaitingDownload = false;
    const QString destination = m_committedDestination;
    m_committedDestination.clear();
    removePartialFiles(destination);
    LogManager::shared().log(QStringLiteral("Installer download failed: %1").arg(message),
                             QStringLiteral("ERROR"));
    setPhase(Phase::failed(message));
}

void DiskImageDownloadSession::removePartialFiles(const QString &destination)
{
    if (destination.isEmpty())
        return;
    // The name was free when it was chosen, so whatever is there now is this download's.
    QFile::remove(destination);
    QFile::remove(DownloadFileNames::partialFilePath(destination));
}

void DiskImageDownloadSession::forgetActiveDownload()
{
    if (m_activeDownload)
        m_activeDownload->disconnect(this);
    m_activeDownload = nullptr;
    m_deadline.stop();
    m_progressSignal.stop();
    if (m_progress != m_lastSignalledProgress)
        setProgress(m_progress, false);
}

void DiskImageDownloadSession::setPhase(const Phase &phase)
{
    if (m_phase == phase)
        return;
    m_phase = phase;
    Q_EMIT phaseChanged(m_phase);
}

void DiskImageDownloadSession::setProgress(double progress, bool coalesce)
{
    m_progress = progress;
    if (coalesce && m_progressSignal.isActive())
        return; // the timer signals the latest value
    if (progress == m_lastSignalledProgress)
        return;
    m_lastSignalledProgress = progress;
    Q_EMIT progressChanged(progress);
    if (coalesce)
        m_progressSignal.start();
}
