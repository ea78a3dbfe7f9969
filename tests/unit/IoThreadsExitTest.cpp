// The process ends while an I/O thread is still closing a session: the thread's last work
// asks for its keeper while the pool is being stopped, and the process must still end.

#include "ZEKTIoThreads.h"

#include <QCoreApplication>
#include <QProcess>
#include <QThread>
#include <gtest/gtest.h>

namespace {

// Runs in a child process: a hang there must not hang the suite.
int closeWhileStopping(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QObject session;
    session.moveToThread(ZEKTIoThreads::next());
    QMetaObject::invokeMethod(
        &session,
        [] {
            // Still closing when the application goes and the pool stops.
            QThread::msleep(300);
            ZEKTIoThreads::keeper();
        },
        Qt::QueuedConnection);
    QThread::msleep(50);
    return 0;
}

char **g_argv = nullptr;

} // namespace

TEST(IoThreads, ProcessEndsWhileASessionIsClosing)
{
    QProcess child;
    child.start(QString::fromLocal8Bit(g_argv[0]), {QStringLiteral("--close-while-stopping")});
    ASSERT_TRUE(child.waitForStarted());
    const bool finished = child.waitForFinished(10000);
    if (!finished) {
        child.kill();
        child.waitForFinished();
    }
    EXPECT_TRUE(finished);
    EXPECT_EQ(child.exitStatus(), QProcess::NormalExit);
}

int main(int argc, char **argv)
{
    if (argc > 1 && QByteArray(argv[1]) == "--close-while-stopping")
        return closeWhileStopping(argc, argv);
    g_argv = argv;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
