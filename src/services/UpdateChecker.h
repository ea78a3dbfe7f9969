#pragma once

#include "UpdateCheckOutcome.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <optional>

#include <QNetworkReply>

// One update check: a plain GET of the feed through the console's shared HTTP client, then the
// feed's verdict. Each check is independent; nothing is cached. Main thread only.
class UpdateChecker : public QObject {
    Q_OBJECT

public:
    explicit UpdateChecker(QObject *parent = nullptr);
    ~UpdateChecker() override;

    // "/updates/telvane.txt" on the maker's web host, or none when it cannot be formed.
    static std::optional<QUrl> feedAddress();

    // Starts the check against `running` (the build's version when not given); `finished`
    // follows exactly once, never from inside this call. A check already under way is dropped.
    void checkForUpdates(const std::optional<QString> &running = std::nullopt);
    bool isChecking() const { return m_reply != nullptr; }

    // Tests shorten the shared client's transfer time-out for their requests.
    void setTransferTimeout(int milliseconds) { m_transferTimeoutMs = milliseconds; }

    // The outcome of a finished reply, whose first bytes are `body`; `bodyTooLarge` when the
    // reading stopped at the size limit.
    static UpdateCheckOutcome outcomeOf(QNetworkReply &reply, const QByteArray &body,
                                        bool bodyTooLarge, const QString &running);

Q_SIGNALS:
    void finished(const UpdateCheckOutcome &outcome);

private:
    void finishLater(const UpdateCheckOutcome &outcome);
    void readBody();
    void handleFinished();

    QPointer<QNetworkReply> m_reply;
    QByteArray m_body;
    bool m_bodyTooLarge = false;
    QString m_running;
    int m_transferTimeoutMs = 0;
};
