#pragma once

#include "UpdateChecker.h"
#include "UpdateDownloadPresentation.h"

#include "platform/Alert.h"

#include <QObject>
#include <optional>

class AlertPresenter;

// What the About window's "Check for Updates..." does, without the window: runs a check and
// ends it in an alert (up to date, or why the check failed) or in an offer that the window
// shows as the update sheet. Main thread only.
class UpdateCheckCoordinator : public QObject {
    Q_OBJECT

public:
    // `alerts` null: the presenter the console installed (AlertPresenter::shared()).
    explicit UpdateCheckCoordinator(AlertPresenter *alerts = nullptr, QObject *parent = nullptr);

    // Starts one independent check; an earlier one still under way is dropped.
    void checkForUpdates(const std::optional<QString> &running = std::nullopt);
    UpdateChecker &checker() { return m_checker; }

    // The offer on screen, if any.
    const std::optional<UpdateDownloadPresentation> &updateDownloadPresentation() const
    {
        return m_presentation;
    }
    // The sheet closed.
    void clearPresentation();

    // The alert an outcome ends in, or none when it is an offer with an installer address
    // (`installer` is then set).
    static std::optional<Alert> alertFor(const UpdateCheckOutcome &outcome,
                                         std::optional<QUrl> *installer = nullptr);

Q_SIGNALS:
    void presentationChanged();
    // Every outcome, after it was acted on.
    void checkFinished(const UpdateCheckOutcome &outcome);

private:
    void handleOutcome(const UpdateCheckOutcome &outcome);

    AlertPresenter *m_alerts;
    UpdateChecker m_checker;
    std::optional<UpdateDownloadPresentation> m_presentation;
};
