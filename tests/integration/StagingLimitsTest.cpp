// The transfer limit at its edge, with sparse files (kept out of the sanitizer run: the
// accepted file is really copied).

#include "automation/SharedAppState.h"
#include "model/TransferLimits.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

class StagingLimitsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fileAtTheLimitIsStagedOneByteMoreIsNot()
    {
        QTemporaryDir files;
        QFile source(files.filePath("big.bin"));
        QVERIFY(source.open(QIODevice::WriteOnly));
        QVERIFY(source.resize(TransferLimits::maxFileTransferSize + 1));
        source.close();
        SharedAppState state;
        const auto error = state.stageUpload(source.fileName(), "big.bin", QUuid::createUuid());
        QVERIFY(error);
        QCOMPARE(error->code, 3);
        QCOMPARE(error->description,
                 QStringLiteral("The selected file exceeds the 256 MiB transfer limit"));
        QVERIFY(QDir(state.uploadDirectory()).entryList(QDir::Files).isEmpty());

        QVERIFY(source.resize(268435456));
        QVERIFY(!state.stageUpload(source.fileName(), "big.bin", QUuid::createUuid()));
        const QFileInfoList staged = QDir(state.uploadDirectory()).entryInfoList(QDir::Files);
        QCOMPARE(staged.size(), 1);
        QCOMPARE(staged.first().size(), qint64(268435456));
    }
};

QTEST_GUILESS_MAIN(StagingLimitsTest)
#include "StagingLimitsTest.moc"
