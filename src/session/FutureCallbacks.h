#pragma once

#include <QFuture>
#include <QObject>
#include <QString>
#include <functional>

namespace FutureCallbacks {

// Calls `onSuccess`, or `onFailure` with the error's description, on `context`'s thread
// once `future` has finished. A future cancelled without an error counts as a failure.
// Nothing is called when `context` is destroyed first.
void observe(const QFuture<void> &future, QObject *context, std::function<void()> onSuccess,
             std::function<void(const QString &description)> onFailure);

} // namespace FutureCallbacks
