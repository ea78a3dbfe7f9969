#include "FakeZEKTClient.h"

QFuture<void> FakeZEKTClient::record(const QString &operation, QVariantList arguments,
                                     ProgressFunction progress)
{
    auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    QFuture<void> future = promise->future();
    calls.append(Call{operation, std::move(arguments), promise, std::move(progress)});
    if (autoSucceed.contains(operation))
        complete(operation);
    return future;
}

bool FakeZEKTClient::complete(const QString &operation, const std::optional<QString> &error)
{
    for (Call &call : calls) {
        if (call.operation != operation || call.promise->future().isFinished())
            continue;
        if (error)
            call.promise->setException(ZEKTError(*error));
        call.promise->finish();
        return true;
    }
    return false;
}

QVariantList FakeZEKTClient::lastArguments(const QString &operation) const
{
    for (auto it = calls.crbegin(); it != calls.crend(); ++it) {
        if (it->operation == operation)
            return it->arguments;
    }
    return {};
}

int FakeZEKTClient::callCount(const QString &operation) const
{
    return int(std::count_if(calls.begin(), calls.end(),
                             [&](const Call &call) { return call.operation == operation; }));
}
