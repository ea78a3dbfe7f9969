#include "FileLock.h"

#include <QFile>
#include <QThread>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

FileLock::FileLock(const QString &path, const QDeadlineTimer &deadline)
    : m_fd(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
{
    while (m_fd >= 0 && ::flock(m_fd, LOCK_EX | LOCK_NB) != 0) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || deadline.hasExpired()) {
            release();
            return;
        }
        QThread::usleep(500);
    }
}

FileLock::~FileLock()
{
    release();
}

void FileLock::release()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}
