#pragma once

#include <QUrl>
#include <QWidget>

#include <functional>

class DiskImageDownloadSession;
class QLabel;
class QProgressBar;
class QPushButton;

// The state of an installer download: a bar while it runs, then the result with "Show in
// Finder", "Retry" and "Close" as the phase allows. What it shows comes from
// DownloadProgressContent; this only arranges it and forwards the buttons.
class DownloadProgressView : public QWidget {
    Q_OBJECT

public:
    explicit DownloadProgressView(DiskImageDownloadSession *session, QWidget *parent = nullptr);

    // Called with the saved file by "Show in Finder"; when not set, the file is revealed in the
    // desktop's file manager.
    void setOnShowInFinder(std::function<void(const QUrl &)> onShowInFinder)
    {
        m_onShowInFinder = std::move(onShowInFinder);
    }
    void setOnClose(std::function<void()> onClose) { m_onClose = std::move(onClose); }

private:
    void refresh();

    DiskImageDownloadSession *m_session;
    std::function<void(const QUrl &)> m_onShowInFinder;
    std::function<void()> m_onClose;
    QProgressBar *m_bar;
    QLabel *m_symbol;
    QLabel *m_title;
    QLabel *m_detail;
    QPushButton *m_showInFinder;
    QPushButton *m_retry;
    QPushButton *m_close;
};
