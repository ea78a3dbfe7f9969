#include "ZEKTIoThreads.h"

#include <QCoreApplication>
#include <QMutex>
#include <QThread>

namespace {
QMutex g_lock;
QThread *g_threads[ZEKTIoThreads::threadCount] = {};
int g_next = 0;

void stopAll()
{
    QMutexLocker locker(&g_lock);
    for (QThread *&thread : g_threads) {
        if (!thread)
            continue;
        thread->quit();
        thread->wait();
        delete thread;
        thread = nullptr;
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
        g_threads[index] = new QThread;
        g_threads[index]->setObjectName(QStringLiteral("zekt-io-%1").arg(index));
        g_threads[index]->start();
    }
    return g_threads[index];
}
