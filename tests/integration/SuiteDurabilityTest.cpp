// The shared suite under concurrent writers: a process that keeps saving the computer list
// is killed at random moments while this process writes queue keys through
// SharedAppState. After every kill the list must decode whole and our keys must be there.

#include "ProcessSignals.h"
#include "automation/SharedAppState.h"
#include "model/ComputerJson.h"
#include "model/UuidText.h"
#include "platform/PendingActionKeys.h"
#include "platform/SettingsFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QtTest>
#include <csignal>

class SuiteDurabilityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void killedListWriterNeverCorruptsTheSuite()
    {
        constexpr int count = 12;
        const char *const keys[] = {PendingActionKeys::connection, PendingActionKeys::disconnection,
                                    PendingActionKeys::remoteControl,
                                    PendingActionKeys::stopRemoteControl};
        QHash<QString, QString> written;
        QRandomGenerator random(20261123);
        int writerSaves = 0;
        QList<RemoteComputer> seed(count);
        for (RemoteComputer &computer : seed)
            computer.host = QStringLiteral("seed.local");
        SettingsFiles::openSharedSuite()->setValue(QStringLiteral("remoteComputers"),
                                                   ComputerJson::encodeList(seed));
        QByteArray previous;

        for (int round = 0; round < 50; ++round) {
            QProcess writer;
            writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            writer.setStandardOutputFile(QProcess::nullDevice());
            writer.start(QStringLiteral(SUITE_WRITER_PATH), {QString::number(count)});
            QVERIFY(writer.waitForStarted());
            // Write queue keys while the list is being saved, then kill at a random moment.
            const qint64 until = QDateTime::currentMSecsSinceEpoch() + random.bounded(30, 400);
            while (QDateTime::currentMSecsSinceEpoch() < until) {
                const QUuid id = QUuid::createUuid();
                const char *key = keys[random.bounded(4)];
                SharedAppState().queueComputerAction(key, id);
                written.insert(QLatin1String(key), UuidText::format(id));
                QTest::qWait(random.bounded(0, 5));
            }
            QVERIFY(signalRunning(writer, SIGKILL));
            QVERIFY(writer.waitForFinished());

            const auto suite = SettingsFiles::openSharedSuite();
            QCOMPARE(suite->status(), QSettings::NoError);
            const QVariant blob = suite->value(QStringLiteral("remoteComputers"));
            const auto list = ComputerJson::decodeList(blob.toByteArray());
            QVERIFY2(list, qPrintable(QStringLiteral("round %1").arg(round)));
            QCOMPARE(list->size(), count);
            writerSaves += blob.toByteArray() != previous ? 1 : 0;
            previous = blob.toByteArray();
            for (auto it = written.cbegin(); it != written.cend(); ++it)
                QCOMPARE(suite->value(it.key()).toString(), it.value());
        }
        // Nothing was moved aside as unreadable.
        const QFileInfo file(SettingsFiles::sharedSuitePath());
        QVERIFY(QDir(file.absolutePath())
                    .entryList({file.fileName() + QStringLiteral(".corrupt*")})
                    .isEmpty());
        qInfo("rounds in which the list had changed: %d of 50", writerSaves);
    }

    // The store killed at random points of 200 saves, again and again: what is read back
    // is always the list saved last or the one being saved, whole, and nothing ever had to
    // be set aside.
    void killedDuringSavesReloadsThePreviousOrTheNewList()
    {
        constexpr int count = 20;
        QRandomGenerator random(20261125);
        QFile::remove(SettingsFiles::sharedSuitePath());
        int lastSaved = 0;
        int inFlight = 0;
        for (int run = 0; run < 20; ++run) {
            QProcess writer;
            writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            writer.start(
                QStringLiteral(SUITE_WRITER_PATH),
                {QString::number(count), QStringLiteral("--numbered"), QStringLiteral("200")});
            QVERIFY(writer.waitForStarted());
            // Killed after a random number of saves, somewhere inside a later one.
            const int killAfter = random.bounded(0, 200);
            int printed = lastSaved;
            QVERIFY(QTest::qWaitFor(
                [&] {
                    writer.waitForReadyRead(2);
                    while (writer.canReadLine()) {
                        const QByteArray line = writer.readLine().trimmed();
                        if (line.startsWith("saved "))
                            printed = line.mid(6).toInt();
                    }
                    return printed - lastSaved >= killAfter ||
                           writer.state() == QProcess::NotRunning;
                },
                60000));
            QThread::usleep(random.bounded(0, 3000));
            // Unless all 200 were saved first.
            if (signalRunning(writer, SIGKILL))
                QVERIFY(writer.waitForFinished());
            while (writer.canReadLine()) {
                const QByteArray line = writer.readLine().trimmed();
                if (line.startsWith("saved "))
                    printed = line.mid(6).toInt();
            }

            const auto suite = SettingsFiles::openSharedSuite();
            QCOMPARE(suite->status(), QSettings::NoError);
            const auto list =
                ComputerJson::decodeList(suite->value("remoteComputers").toByteArray());
            QVERIFY2(list, qPrintable(QStringLiteral("run %1").arg(run)));
            QCOMPARE(list->size(), count);
            const int stored = list->first().description->section(u'.', 0, 0).mid(5).toInt();
            QVERIFY2(stored == printed || stored == printed + 1,
                     qPrintable(QStringLiteral("run %1: saved %2, read back %3")
                                    .arg(run)
                                    .arg(printed)
                                    .arg(stored)));
            for (const RemoteComputer &computer : *list)
                QVERIFY(computer.description->startsWith(QStringLiteral("save %1").arg(stored)));
            inFlight += stored == printed + 1 ? 1 : 0;
            lastSaved = stored;
        }
        const QFileInfo file(SettingsFiles::sharedSuitePath());
        QVERIFY(QDir(file.absolutePath())
                    .entryList({file.fileName() + QStringLiteral(".corrupt*"),
                                file.fileName() + QStringLiteral(".undecodable*")})
                    .isEmpty());
        qInfo("lists saved over 20 runs: %d; killed while a save was under way: %d", lastSaved,
              inFlight);
    }
};

QTEST_GUILESS_MAIN(SuiteDurabilityTest)
#include "SuiteDurabilityTest.moc"
