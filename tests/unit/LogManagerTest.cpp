#include "model/LogManager.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <thread>

namespace {

struct Entry {
    QString time, category, message;
};

// Splits on the first two closing brackets, as the log viewer does.
Entry split(const QString &entry)
{
    const int first = entry.indexOf(QLatin1Char(']'));
    const int second = entry.indexOf(QLatin1Char(']'), first + 1);
    return {entry.mid(1, first - 1), entry.mid(first + 3, second - first - 3),
            entry.mid(second + 2)};
}

} // namespace

class LogManagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        LogManager::shared().clearLogs();
        QTRY_VERIFY(LogManager::shared().logs().isEmpty());
    }

    void entryFormat()
    {
        LogManager::shared().log(QStringLiteral("a ] tricky\nmessage"), QStringLiteral("WARN"));
        LogManager::shared().log(QStringLiteral("plain"), QString());
        // Appends are asynchronous even from the main thread.
        QVERIFY(LogManager::shared().logs().isEmpty());
        QTRY_COMPARE(LogManager::shared().logs().size(), 2);
        const Entry first = split(LogManager::shared().logs().at(0));
        QCOMPARE(first.category, QStringLiteral("WARN"));
        QCOMPARE(first.message, QStringLiteral("a ] tricky\nmessage"));
        QVERIFY(first.time.count(QLatin1Char(':')) >= 2); // hours, minutes and seconds
        QVERIFY(!first.time.contains(QLatin1Char('-')));  // no date
        QVERIFY(LogManager::shared().logs().at(1).contains(QStringLiteral("] [] plain")));
    }

    void keepsTheNewestFiveThousandInOneChange()
    {
        QSignalSpy changes(&LogManager::shared(), &LogManager::logsChanged);
        for (int i = 1; i <= 7000; ++i)
            LogManager::shared().log(QString::number(i), QStringLiteral("UI"));
        QTRY_COMPARE(changes.size(), 7000);
        const QStringList &logs = LogManager::shared().logs();
        QCOMPARE(logs.size(), LogManager::maxLogs);
        QCOMPARE(split(logs.first()).message, QStringLiteral("2001"));
        QCOMPARE(split(logs.last()).message, QStringLiteral("7000"));
    }

    void clearIsOrderedWithAppends()
    {
        LogManager::shared().log(QStringLiteral("before"), QStringLiteral("UI"));
        LogManager::shared().clearLogs();
        LogManager::shared().log(QStringLiteral("after"), QStringLiteral("UI"));
        QTRY_COMPARE(LogManager::shared().logs().size(), 1);
        QTest::qWait(20);
        QCOMPARE(LogManager::shared().logs().size(), 1);
        QCOMPARE(split(LogManager::shared().logs().first()).message, QStringLiteral("after"));
    }

    void eachThreadKeepsItsOrder()
    {
        constexpr int perThread = 500;
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([t] {
                for (int i = 0; i < perThread; ++i)
                    LogManager::shared().log(QStringLiteral("%1:%2").arg(t).arg(i),
                                             QStringLiteral("STATS"));
            });
        }
        for (auto &thread : threads)
            thread.join();
        QTRY_COMPARE(LogManager::shared().logs().size(), 4 * perThread);
        int next[4] = {0, 0, 0, 0};
        for (const QString &entry : LogManager::shared().logs()) {
            const QStringList parts = split(entry).message.split(QLatin1Char(':'));
            const int thread = parts.at(0).toInt();
            QCOMPARE(parts.at(1).toInt(), next[thread]);
            ++next[thread];
        }
    }
};

QTEST_GUILESS_MAIN(LogManagerTest)
#include "LogManagerTest.moc"
