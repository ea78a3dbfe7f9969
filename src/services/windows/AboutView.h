#pragma once

#include <QPointer>
#include <QWidget>

class AboutLogoView;
class AlertPresenter;
class QPushButton;
class UpdateCheckCoordinator;
#include "UpdateDownloadSheet.h"

// The About window's content: the application's name and version, the maker, the one way to
// look for a newer version, and links to the maker's pages. The check and its outcome live in
// UpdateCheckCoordinator; this shows its offer as a sheet and clears it when the sheet closes.
class AboutView : public QWidget {
    Q_OBJECT

public:
    // `alerts` null: the presenter the console installed.
    explicit AboutView(AlertPresenter *alerts = nullptr, QWidget *parent = nullptr);

    UpdateCheckCoordinator &coordinator() const { return *m_coordinator; }
    QPushButton *checkForUpdatesButton() const { return m_checkForUpdates; }
    // The sheet on screen, if any.
    UpdateDownloadSheet *sheet() const { return m_sheet; }

protected:
    // Movable by its background.
    void mousePressEvent(QMouseEvent *event) override;

private:
    void showPresentation();

    UpdateCheckCoordinator *m_coordinator;
    QPushButton *m_checkForUpdates;
    QPointer<UpdateDownloadSheet> m_sheet;
};
