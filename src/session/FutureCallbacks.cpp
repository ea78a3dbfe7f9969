#include "FutureCallbacks.h"

#include "protocol/ZEKTError.h"

#include <QFutureWatcher>

namespace FutureCallbacks {

void observe(const QFuture<void> &future, QObject *context, std::function<void()> onSuccess,
             std::function<void(const QString &description)> onFailure)
{
    auto *watcher = new QFutureWatcher<void>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher,
                     [watcher, onSuccess = std::move(onSuccess), onFailure = std::move(onFailure)] {
                         watcher->deleteLater();
                         QFuture<void> done = watcher->future();
                         QString error;
                         bool failed = false;
                         try {
                             done.waitForFinished(); // rethrows the stored error
                         } catch (const ZEKTError &e) {
                             failed = true;
                             error = e.description();
                         } catch (const std::exception &e) {
                             failed = true;
                             error = QString::fromLocal8Bit(e.what());
                         } catch (...) {
                             failed = true;
                             error = QStringLiteral("Unknown error");
                         }
                         if (!failed && done.isCanceled()) {
                             failed = true;
                             error = QStringLiteral("The operation was cancelled");
                         }
                         if (failed)
                             onFailure(error);
                         else
                             onSuccess();
                     });
    watcher->setFuture(future);
}

} // namespace FutureCallbacks
