// The shared suite under concurrent writers: a process that keeps saving the computer list
// is killed at random moments while this process writes queue keys through
// SharedAppState. After every kill the list must decode whole and our keys must be there.

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
            ::kill(pid_t(writer.processId()), SIGKILL);
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
};

QTEST_GUILESS_MAIN(SuiteDurabilityTest)
#include "SuiteDurabilityTest.moc"
