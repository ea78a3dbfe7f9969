#pragma once

#include "services/UpdateDownloadPresentation.h"

#include <QDialog>

class DiskImageDownloadHostView;
class DiskImageDownloadSession;
class DownloadProgressView;
class QPushButton;
class QStackedWidget;

// The offer of a newer version, as a sheet over the About window: the version, its release
// notes, and the choice between downloading the installer here and opening the maker's web
// site. Once the download starts, its progress replaces the choice. The sheet owns its
// download session; closing the sheet ends a download still under way.
class UpdateDownloadSheet : public QDialog {
    Q_OBJECT

public:
    UpdateDownloadSheet(const UpdateDownloadPresentation &presentation, QWidget *parent);
    ~UpdateDownloadSheet() override;

    const UpdateDownloadPresentation &presentation() const { return m_presentation; }
    DiskImageDownloadSession *session() const { return m_session; }
    bool userStartedInAppDownload() const { return m_userStartedInAppDownload; }

    // "Download directly in the app".
    void startInAppDownload();

private:
    void refreshCancelDownload();

    UpdateDownloadPresentation m_presentation;
    DiskImageDownloadSession *m_session;
    DiskImageDownloadHostView *m_host;
    QStackedWidget *m_choiceOrProgress;
    DownloadProgressView *m_progress;
    QPushButton *m_download;
    QPushButton *m_cancelDownload;
    bool m_userStartedInAppDownload = false;
};
