#include "EventLoopWait.h"

#include <QEventLoop>
#include <QTimer>

namespace EventLoopWait {

bool until(const std::function<bool()> &done, int timeoutMs)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer poll;
    poll.setInterval(5);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    poll.start();
    loop.exec();
    return done();
}

void runFor(int milliseconds)
{
    until([] { return false; }, milliseconds);
}

} // namespace EventLoopWait
