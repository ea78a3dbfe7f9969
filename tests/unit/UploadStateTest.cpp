// The upload display state of AppState and its timed resets.
#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QTest>

class UploadStateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        state = std::make_unique<AppState>();
        // Long enough that a busy machine's stalls cannot hide a state from the polls.
        state->setUploadDisplayDurationsForTesting(1500, 300);
    }
    void cleanup() { state.reset(); }

    void outcomeStaysThenClears()
    {
        state->beginFileTransfer("report.pdf");
        state->updateFileTransferProgress("Sending file...", 0.3);
        state->updateFileTransferProgress("Sending file...", 0.6);
        QTRY_COMPARE(state->fileTransferProgress(), 0.6);
        QVERIFY(state->isFileTransferInProgress());
        state->completeFileTransfer("Saved to Downloads");
        QTRY_VERIFY(!state->isFileTransferInProgress());
        QCOMPARE(state->fileTransferStatus(), QStringLiteral("Saved to Downloads"));
        QCOMPARE(state->fileTransferFileName(), QStringLiteral("report.pdf"));
        QTRY_COMPARE(state->fileTransferStatus(), QString());
        QCOMPARE(state->fileTransferFileName(), QString());
        QCOMPARE(state->fileTransferProgress(), 0.0);
    }

    void cancelHidesTheTransferUntilItsOutcome()
    {
        state->beginFileTransfer("big.iso");
        state->updateFileTransferProgress("Sending file...", 0.5);
        state->cancelFileTransfer();
        QTRY_COMPARE(state->fileTransferStatus(), QStringLiteral("Transfer cancelled"));
        QCOMPARE(state->fileTransferProgress(), 0.0);
        // The transfer goes on underneath; its progress stays hidden.
        state->updateFileTransferProgress("Sending file...", 0.7);
        QTest::qWait(20);
        QCOMPARE(state->fileTransferProgress(), 0.0);
        state->completeFileTransfer("Upload failed: closed");
        QTRY_COMPARE(state->fileTransferStatus(), QStringLiteral("Upload failed: closed"));
        // The cancel notice's reset must not cut the outcome short.
        QTest::qWait(350);
        QCOMPARE(state->fileTransferStatus(), QStringLiteral("Upload failed: closed"));
        QTRY_COMPARE(state->fileTransferStatus(), QString());
    }

    void unreachableComputerOnlyShowsTheOutcome()
    {
        state->completeFileTransfer("Unable to connect to Studio for file upload");
        QTRY_COMPARE(state->fileTransferStatus(),
                     QStringLiteral("Unable to connect to Studio for file upload"));
        QVERIFY(!state->isFileTransferInProgress());
        QTRY_COMPARE(state->fileTransferStatus(), QString());
    }

private:
    std::unique_ptr<AppState> state;
};

QTEST_MAIN(UploadStateTest)
#include "UploadStateTest.moc"
