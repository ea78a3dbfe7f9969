#include "UploadReceiver.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace {

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QString store(UploadReceiver &receiver, const QString &name, const QByteArray &data)
{
    auto decision = receiver.begin(name, data.size());
    if (!decision.file)
        return QStringLiteral("refused: ") + decision.refusal;
    if (auto error = decision.file->write(data))
        return QStringLiteral("write: ") + *error;
    const auto committed = decision.file->commit();
    return committed.success ? committed.message : QStringLiteral("commit: ") + committed.message;
}

} // namespace

TEST(UploadReceiver, NamesAreReducedToASafeLastComponent)
{
    EXPECT_EQ(UploadReceiver::safeFileName("../../etc/passwd"), "passwd");
    EXPECT_EQ(UploadReceiver::safeFileName("C:\\Users\\x\\report.pdf"), "report.pdf");
    EXPECT_EQ(UploadReceiver::safeFileName("a\nb\tc\x01.txt"), "abc.txt");
    EXPECT_EQ(UploadReceiver::safeFileName(".."), "upload");
    EXPECT_EQ(UploadReceiver::safeFileName("dir/"), "upload");
    EXPECT_EQ(UploadReceiver::safeFileName(".bashrc"), "bashrc");
    EXPECT_EQ(UploadReceiver::safeFileName(" ..hidden "), "hidden");
    EXPECT_EQ(UploadReceiver::safeFileName(". . .x"), "x");
    const QString longName = QString(300, QLatin1Char('x')) + ".tar";
    const QString shortened = UploadReceiver::safeFileName(longName);
    EXPECT_LE(shortened.toUtf8().size(), 240);
    EXPECT_TRUE(shortened.endsWith(".tar"));
    EXPECT_EQ(UploadReceiver::numberedName("photo.jpg", 1), "photo (1).jpg");
    EXPECT_EQ(UploadReceiver::numberedName("README", 2), "README (2)");
}

TEST(UploadReceiver, StoresWithoutOverwritingAndLeavesNoTemporaryFile)
{
    QTemporaryDir dir;
    UploadReceiver receiver(dir.path() + "/uploads", 1 << 20);
    EXPECT_EQ(store(receiver, "../notes.txt", "first"), "notes.txt");
    EXPECT_EQ(store(receiver, "notes.txt", "second"), "notes (1).txt");
    EXPECT_EQ(store(receiver, "sub/notes.txt", "third"), "notes (2).txt");
    EXPECT_EQ(entries(receiver.folder()),
              QStringList({"notes (1).txt", "notes (2).txt", "notes.txt"}));
    QFile first(receiver.folder() + "/notes.txt");
    ASSERT_TRUE(first.open(QIODevice::ReadOnly));
    EXPECT_EQ(first.readAll(), "first");
}

TEST(UploadReceiver, RefusalsAndFailuresLeaveNothingBehind)
{
    QTemporaryDir dir;
    UploadReceiver receiver(dir.path(), 100);
    EXPECT_TRUE(store(receiver, "big.bin", QByteArray(101, 'x'))
                    .startsWith("refused: The file is too large"));
    EXPECT_TRUE(receiver.begin("neg", -1).refusal.contains("Invalid"));

    receiver.setFreeSpaceFunction([](const QString &) { return std::optional<quint64>(1000); });
    EXPECT_TRUE(store(receiver, "a.bin", "abc").startsWith("refused: Not enough disk space"));
    receiver.setFreeSpaceFunction(
        [](const QString &) { return std::optional<quint64>(1ull << 40); });

    {
        auto decision = receiver.begin("short.bin", 10);
        ASSERT_TRUE(decision.file);
        EXPECT_FALSE(decision.file->write("12345"));
        EXPECT_TRUE(decision.file->write("123456").has_value()); // beyond the announced size
        const auto committed = decision.file->commit();          // only 5 of 10 bytes
        EXPECT_FALSE(committed.success);
        EXPECT_FALSE(committed.message.isEmpty());
    }
    {
        auto decision = receiver.begin("dropped.bin", 3);
        ASSERT_TRUE(decision.file);
        EXPECT_FALSE(decision.file->write("abc"));
        decision.file->discard(); // digest mismatch
    }
    {
        EXPECT_TRUE(receiver.begin("abandoned.bin", 3).file);
    } // destroyed unfinished
    EXPECT_EQ(entries(dir.path()), QStringList());
}

TEST(UploadReceiver, FileSizeLimitOfTheProcessGivesAReadableError)
{
    QTemporaryDir dir;
    UploadReceiver receiver(dir.path(), 1 << 20);
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = old;
    small.rlim_cur = 4096;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const QString result = store(receiver, "large.bin", QByteArray(8192, 'x'));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(result, "write: The file is larger than this computer allows");
    EXPECT_EQ(entries(dir.path()), QStringList());
}
