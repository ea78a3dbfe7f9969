#include "NotificationHub.h"

#include <QCoreApplication>

NotificationHub::NotificationHub()
{
    if (auto *app = QCoreApplication::instance(); app && thread() != app->thread())
        moveToThread(app->thread());
}

NotificationHub &NotificationHub::shared()
{
    static NotificationHub *instance = new NotificationHub;
    return *instance;
}

void NotificationHub::post(const QString &name, const QVariantMap &userInfo)
{
    Q_EMIT notificationPosted(name, userInfo);
}
