#include "UpdateCheckCoordinator.h"

#include "UpdateFeed.h"

#include "model/LogManager.h"
#include "platform/AlertPresenter.h"

UpdateCheckCoordinator::UpdateCheckCoordinator(AlertPresenter *alerts, QObject *parent)
    : QObject(parent), m_alerts(alerts), m_checker(this)
{
    connect(&m_checker, &UpdateChecker::finished, this, &UpdateCheckCoordinator::handleOutcome);
}

void UpdateCheckCoordinator::checkForUpdates(const std::optional<QString> &running)
{
    m_checker.checkForUpdates(running);
}

void UpdateCheckCoordinator::clearPresentation()
{
    if (!m_presentation)
        return;
    m_presentation.reset();
    Q_EMIT presentationChanged();
}

std::optional<Alert> UpdateCheckCoordinator::alertFor(const UpdateCheckOutcome &outcome,
                                                      std::optional<QUrl> *installer)
{
    const auto failed = [](const QString &message) {
        Alert alert;
        alert.style = Alert::Style::warning;
        alert.title = tr("Couldn't Check for Updates");
        alert.text = message;
        alert.buttons = {tr("OK")};
        return alert;
    };
    switch (outcome.kind) {
    case UpdateCheckOutcome::Kind::upToDate: {
        Alert alert;
        alert.style = Alert::Style::informational;
        alert.title = tr("No Updates Available");
        alert.text = tr("You are running the latest version of Telvane.");
        alert.buttons = {tr("OK")};
        return alert;
    }
    case UpdateCheckOutcome::Kind::checkFailed:
        return failed(outcome.message);
    case UpdateCheckOutcome::Kind::updateAvailable: {
        std::optional<QUrl> address = resolveInstallerURL(outcome.info);
        if (!address)
            return failed(tr("The download link for this update is missing or invalid."));
        if (installer)
            *installer = std::move(address);
        return std::nullopt;
    }
    }
    return std::nullopt;
}

void UpdateCheckCoordinator::handleOutcome(const UpdateCheckOutcome &outcome)
{
    std::optional<QUrl> installer;
    if (const std::optional<Alert> alert = alertFor(outcome, &installer)) {
        if (outcome.kind == UpdateCheckOutcome::Kind::checkFailed)
            LogManager::shared().log(QStringLiteral("Update check failed: %1").arg(outcome.message),
                                     QStringLiteral("WARN"));
        if (AlertPresenter *presenter = m_alerts ? m_alerts : AlertPresenter::shared())
            presenter->show(*alert, [](int) {});
    } else {
        m_presentation = UpdateDownloadPresentation{QUuid::createUuid(), outcome.info, *installer};
        LogManager::shared().log(QStringLiteral("Update %1 offered").arg(outcome.info.version),
                                 QStringLiteral("UI"));
        Q_EMIT presentationChanged();
    }
    Q_EMIT checkFinished(outcome);
}
