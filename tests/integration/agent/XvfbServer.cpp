#include "XvfbServer.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

#include <unistd.h>

bool XvfbServer::available()
{
    return !QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty();
}

bool XvfbServer::start(int width, int height)
{
    m_width = width;
    m_height = height;
    for (int n = 50 + getpid() % 400; n < 1000; ++n) {
        if (QFileInfo::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n)) ||
            QFileInfo::exists(QStringLiteral("/tmp/.X%1-lock").arg(n)))
            continue;
        m_number = n;
        if (launch())
            return true;
    }
    return false;
}

bool XvfbServer::restart()
{
    return m_number >= 0 && launch();
}

bool XvfbServer::launch()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral("Xvfb"),
                    {display(), QStringLiteral("-screen"), QStringLiteral("0"),
                     QStringLiteral("%1x%2x24").arg(m_width).arg(m_height),
                     QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    if (!m_process.waitForStarted(5000))
        return false;
    const QString socket = QStringLiteral("/tmp/.X11-unix/X%1").arg(m_number);
    QDeadlineTimer deadline(10000);
    while (!deadline.hasExpired()) {
        if (QFileInfo::exists(socket))
            return true;
        if (m_process.state() != QProcess::Running)
            return false;
        QThread::msleep(20);
    }
    return false;
}

void XvfbServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
}
