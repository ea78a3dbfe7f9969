#pragma once

#include "model/ComputerFields.h"
#include "presentation/ComputerPreviewViewSnapshot.h"

#include <QPointer>
#include <QUuid>
#include <QWidget>

class AlertPresenter;
class AppState;
class ComputerFormFactory;
class DashboardScreenPreview;
class ElidedLabel;
class ITInventoryDetailSection;
class MetricGaugeView;
class QGridLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTabBar;
class RemoteControlWindowFactory;
class StatusFactTile;
class TechnicalSpecGrid;

// One computer in detail: header, action bar, the upload in progress, and two segments,
// "Status" (gauges, facts, pills, inventory) and "Preview". Button states follow the
// store's connection flags for the computer, or the last known ones once it is gone (it
// then keeps showing what it showed, and its actions act on nothing). Connecting,
// previews, uploads and removal are asked of whoever hosts the view through signals; the
// edit form and the remote-control window open through their factories, and without one
// the button logs once that it is not available.
class ComputerDetailView : public QWidget {
    Q_OBJECT

public:
    // `alerts` null: the shared presenter.
    ComputerDetailView(AppState &appState, const QUuid &computerId,
                       ComputerFormFactory *formFactory,
                       RemoteControlWindowFactory *remoteControlFactory, QWidget *parent = nullptr,
                       AlertPresenter *alerts = nullptr);

    QUuid computerId() const { return m_snapshot.computerSnapshot.id; }
    const ComputerPreviewViewSnapshot &snapshot() const { return m_snapshot; }
    // In bar order: connect, remote control, upload, edit, remove.
    const QList<QPushButton *> &actionButtons() const { return m_actions; }
    QPushButton *updatePreviewButton() const { return m_updatePreview; }
    DetailSegment selectedSegment() const { return m_snapshot.selectedDetailSegment; }
    void setSelectedSegment(DetailSegment segment);
    // The controller of the last remote-control window opened from here.
    QObject *remoteControlWindowController() const { return m_remoteControl; }

Q_SIGNALS:
    void connectRequested(const QUuid &id);
    void disconnectRequested(const QUuid &id);
    void previewRequested(const QUuid &id);
    void fileTransferRequested(const QUuid &id, const QString &filePath);
    void cancelFileTransferRequested();
    void removeRequested(const QUuid &id);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void placeActionButtons(bool inTwoRows);
    QWidget *makeHeader();
    QWidget *makeUploadPanel();
    QWidget *makeStatusPage();
    QWidget *makePreviewPage();
    void computerChanged(const QUuid &id, ComputerFields fields);
    bool isComputerInStore() const;
    void refresh();
    void refreshStatusPage();
    void refreshFileTransfer();
    void runAction(int index);
    void chooseFileToUpload();
    void openRemoteControl();
    void openEditForm();
    void confirmRemoval();

    AppState &m_appState;
    ComputerFormFactory *m_formFactory;
    RemoteControlWindowFactory *m_remoteControlFactory;
    AlertPresenter *m_alerts;
    ComputerPreviewViewSnapshot m_snapshot;
    ComputerPreviewViewSnapshot::LiveFlags m_flags;
    QPointer<QObject> m_remoteControl;
    bool m_isConfirmingRemoval = false;

    QLabel *m_name;
    QLabel *m_connectionText;
    QLabel *m_description;
    QLabel *m_statusLine;
    QList<QPushButton *> m_actions;
    QGridLayout *m_actionBar;
    bool m_isActionBarInTwoRows = false;
    QWidget *m_uploadPanel;
    ElidedLabel *m_uploadTitle;
    QProgressBar *m_uploadProgress;
    ElidedLabel *m_uploadStatus;
    QTabBar *m_segments;
    QStackedWidget *m_pages;
    QLabel *m_statusSubtitle;
    QWidget *m_noStatistics;
    QWidget *m_statistics;
    QList<MetricGaugeView *> m_gauges;
    QList<StatusFactTile *> m_facts;
    TechnicalSpecGrid *m_pills;
    ITInventoryDetailSection *m_inventory;
    DashboardScreenPreview *m_preview;
    QPushButton *m_updatePreview;
};
