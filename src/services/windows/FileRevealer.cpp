#include "FileRevealer.h"

#include "model/LogManager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>

namespace FileRevealer {
namespace {

void openFolder(const QUrl &file)
{
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(file.toLocalFile()).absolutePath());
    if (!QDesktopServices::openUrl(folder))
        LogManager::shared().log(
            QStringLiteral("Could not open the folder %1").arg(folder.toLocalFile()),
            QStringLiteral("WARN"));
}

} // namespace

void reveal(const QUrl &file)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(file);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{file.toString(QUrl::FullyEncoded)} << QString();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [file](QDBusPendingCallWatcher *finished) {
                         const QDBusPendingReply<> reply = *finished;
                         finished->deleteLater();
                         if (reply.isError())
                             openFolder(file);
                     });
}

} // namespace FileRevealer
