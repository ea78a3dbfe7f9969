// The cross-process lock behind every write of the shared suite.

#include "platform/FileLock.h"

#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

class FileLockTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void excludesUntilReleasedAndGivesUpAtTheDeadline()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("suite.conf.writer"));
        FileLock first(path, QDeadlineTimer(0));
        QVERIFY(first.isLocked());
        // Group and other bits: the lock sits next to a file holding passwords.
        QCOMPARE(int(QFileInfo(path).permissions() & 0x00ff), 0);

        // Another open of the same file is another holder, even in this process.
        const FileLock second(path, QDeadlineTimer(50));
        QVERIFY(!second.isLocked());

        first.release();
        QVERIFY(!first.isLocked());
        const FileLock third(path, QDeadlineTimer(0));
        QVERIFY(third.isLocked());
    }

    void killedHolderLeavesNoStaleLock()
    {
        QTemporaryDir dir;
        const QByteArray path = QFile::encodeName(dir.filePath(QStringLiteral("lock")));
        int ready[2];
        QCOMPARE(::pipe(ready), 0);
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            const int fd = ::open(path.constData(), O_RDWR | O_CREAT, 0600);
            if (fd < 0 || ::flock(fd, LOCK_EX) != 0)
                ::_exit(1);
            const char byte = 1;
            if (::write(ready[1], &byte, 1) != 1)
                ::_exit(1);
            for (;;)
                ::pause();
        }
        ::close(ready[1]);
        char byte = 0;
        QCOMPARE(::read(ready[0], &byte, 1), ssize_t(1));
        ::close(ready[0]);

        QVERIFY(!FileLock(QFile::decodeName(path), QDeadlineTimer(20)).isLocked());
        ::kill(child, SIGKILL);
        QCOMPARE(::waitpid(child, nullptr, 0), child);
        QVERIFY(FileLock(QFile::decodeName(path), QDeadlineTimer(0)).isLocked());
    }

    void unusablePathIsNotLocked()
    {
        QVERIFY(
            !FileLock(QStringLiteral("/nonexistent-folder/lock"), QDeadlineTimer(0)).isLocked());
    }
};

QTEST_GUILESS_MAIN(FileLockTest)
#include "FileLockTest.moc"
