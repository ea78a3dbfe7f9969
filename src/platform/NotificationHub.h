#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

// Process-wide notifications with a dictionary payload, e.g. "screenCaptureReceived".
// Lives on the application's main thread; post() from the main thread.
class NotificationHub : public QObject {
    Q_OBJECT

public:
    static NotificationHub &shared();

    void post(const QString &name, const QVariantMap &userInfo);

Q_SIGNALS:
    void notificationPosted(const QString &name, const QVariantMap &userInfo);

private:
    NotificationHub();
};
