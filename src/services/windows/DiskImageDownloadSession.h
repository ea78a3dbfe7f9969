#pragma once

#include "services/DownloadPhase.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <optional>

#include <QWebEngineDownloadRequest>
#include <QWebEngineView>

// Fetches an installer into the user's Downloads folder through a hidden web view's download
// facility, publishing a phase and a progress value for the progress view. It only saves the
// file, never opens it. A failed or cancelled download leaves nothing behind, the engine's
// partial file included, so a retry gets the same name. Main thread only.
//
// The web engine has no request time-out of its own: waiting 60 s for the download to begin,
// or 60 s without a byte while it runs, fails it with "The request timed out.".
class DiskImageDownloadSession : public QObject {
    Q_OBJECT
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)

public:
    using Phase = DownloadPhase;
    static constexpr int defaultRequestTimeoutMs = 60000;
    // Progress signals come at most this often.
    static constexpr int progressIntervalMs = 50;

    explicit DiskImageDownloadSession(QObject *parent = nullptr);
    // Cancels a download under way and removes its partial file.
    ~DiskImageDownloadSession() override;

    const Phase &phase() const { return m_phase; }
    // 0 to 1; 0 while the size is unknown.
    double progress() const { return m_progress; }
    const std::optional<QUrl> &lastRequestedURL() const { return m_lastRequestedURL; }
    // Where the running download is being saved.
    const QString &committedDestination() const { return m_committedDestination; }

    // The hidden web view that performs the downloads, handed over by the host view; null
    // detaches the session (the view is going). Only downloads of this view's page are taken.
    void setWebView(QWebEngineView *webView);
    QWebEngineView *webView() const { return m_webView; }
    // Set when the web engine cannot run in this process: every start fails with the reason.
    void setUnavailableReason(const QString &reason) { m_unavailableReason = reason; }

    void start(const QUrl &url);
    void cancel();
    // Starts again from scratch with the last requested address, if there is one.
    void retry();

    // Tests shorten it.
    void setRequestTimeout(int milliseconds);

Q_SIGNALS:
    void phaseChanged(const DownloadPhase &phase);
    void progressChanged(double progress);

private:
    void handleDownloadRequested(QWebEngineDownloadRequest *request);
    void handleStateChanged();
    void noteReceivedBytes();
    void handleTimeout();
    void setPhase(const Phase &phase);
    void setProgress(double progress, bool coalesce);
    void forgetActiveDownload();
    void fail(const QString &message);
    void removePartialFiles(const QString &destination);
    std::optional<QString> downloadsFolder() const;

    Phase m_phase;
    double m_progress = 0;
    double m_lastSignalledProgress = 0;
    std::optional<QUrl> m_lastRequestedURL;
    QPointer<QWebEngineView> m_webView;
    QPointer<QWebEngineDownloadRequest> m_activeDownload;
    QString m_committedDestination;
    // A download of our page is expected; any other one (after cancel or a time-out) is
    // cancelled on arrival.
    bool m_awaitingDownload = false;
    std::optional<QString> m_unavailableReason;
    QTimer m_deadline;
    QTimer m_progressSignal;
};
