#include "XvfbServer.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

bool XvfbServer::available()
{
    return !QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty();
}

bool XvfbServer::start(int width, int height)
{
    m_width = width;
    m_height = height;
    return launch(true);
}

bool XvfbServer::restart()
{
    return m_number >= 0 && launch(false);
}

bool XvfbServer::launch(bool pickNumber)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // With -displayfd Xvfb takes the first free number and writes it to standard output once
    // it accepts connections.
    const QStringList where = pickNumber
                                  ? QStringList{QStringLiteral("-displayfd"), QStringLiteral("1")}
                                  : QStringList{display()};
    m_process.start(QStringLiteral("Xvfb"),
                    where + QStringList{QStringLiteral("-screen"), QStringLiteral("0"),
                                        QStringLiteral("%1x%2x24").arg(m_width).arg(m_height),
                                        QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    if (!m_process.waitForStarted(5000))
        return false;
    QDeadlineTimer deadline(10000);
    if (pickNumber) {
        QByteArray output;
        while (!output.contains('\n') && !deadline.hasExpired() &&
               m_process.state() == QProcess::Running) {
            m_process.waitForReadyRead(100);
            output += m_process.readAllStandardOutput();
        }
        bool ok = false;
        m_number = output.trimmed().toInt(&ok);
        return ok && m_process.state() == QProcess::Running;
    }
    const QString socket = QStringLiteral("/tmp/.X11-unix/X%1").arg(m_number);
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
