#include "ZEKTIoThreads.h"

#include <QCoreApplication>
#include <QMutex>
#include <QThread>
#include <openssl/crypto.h>

namespace {
QMutex g_lock;
QThread *g_threads[ZEKTIoThreads::threadCount] = {};
QObject *g_keepers[ZEKTIoThreads::threadCount] = {};
int g_next = 0;

void stopAll()
{
    QThread *threads[ZEKTIoThreads::threadCount] = {};
    {
        QMutexLocker locker(&g_lock);
        std::copy(std::begin(g_threads), std::end(g_threads), std::begin(threads));
    }
    // Not under the lock: a session closing on a stopping thread still asks for its keeper.
    for (QThread *thread : threads) {
        if (!thread)
            continue;
        thread->quit();
        thread->wait();
    }
    QMutexLocker locker(&g_lock);
    for (int i = 0; i < ZEKTIoThreads::threadCount; ++i) {
        delete g_threads[i];
        g_threads[i] = nullptr;
        g_keepers[i] = nullptr;
    }
}
} // namespace

QThread *ZEKTIoThreads::next()
{
    QMutexLocker locker(&g_lock);
    const int index = g_next++ % threadCount;
    if (!g_threads[index]) {
        if (std::none_of(std::begin(g_threads), std::end(g_threads),
                         [](QThread *t) { return t != nullptr; }))
            qAddPostRoutine(stopAll);
        auto *thread = new QThread;
        thread->setObjectName(QStringLiteral("zekt-io-%1").arg(index));
        auto *keeper = new QObject;
        keeper->moveToThread(thread);
        // Emitted on the stopping thread, whose last act is to run deferred deletes.
        QObject::connect(thread, &QThread::finished, keeper, &QObject::deleteLater,
                         Qt::DirectConnection);
        // OpenSSL frees a thread's random generators from a thread-local destructor, which
        // may run after QThread::wait() has returned and the process has begun to exit;
        // free them here, on the finishing thread, instead.
        QObject::connect(
            thread, &QThread::finished, keeper, [] { OPENSSL_thread_stop(); },
            Qt::DirectConnection);
        g_threads[index] = thread;
        g_keepers[index] = keeper;
        thread->start();
    }
    return g_threads[index];
}

QObject *ZEKTIoThreads::keeper()
{
    QMutexLocker locker(&g_lock);
    for (int i = 0; i < threadCount; ++i)
        if (g_threads[i] && g_threads[i] == QThread::currentThread())
            return g_keepers[i];
    return nullptr;
}
