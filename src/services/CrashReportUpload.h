#pragma once

#include <QObject>
#include <QPointer>

class CrashReport;
class QNetworkAccessManager;
class QNetworkReply;

// Posts one crash report to the maker's collection endpoint as the form field "crashlog".
// The answer's status is read, its body never; nothing is retried or stored.
class CrashReportUpload : public QObject {
    Q_OBJECT

public:
    static constexpr int timeoutMs = 5000;
    static constexpr char endpointPath[] = "/crash_reports/index.php";

    explicit CrashReportUpload(QNetworkAccessManager &manager, QObject *parent = nullptr);

    // Starts the request; false when the endpoint could not be formed (nothing is sent and
    // finished() does not follow).
    bool send(const CrashReport &report);

Q_SIGNALS:
    // Once per request, after an answer (any status, 0 for none) or a failure.
    void finished(int httpStatus);

private:
    QNetworkAccessManager &m_manager;
    QPointer<QNetworkReply> m_reply;
};
