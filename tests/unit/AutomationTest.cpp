// The automation side: staging, the queue it writes, the stored list it reads and the
// texts and errors of the actions.

#include "TestFiles.h"
#include "automation/ConnectToComputerIntent.h"
#include "automation/GetComputerStatusIntent.h"
#include "automation/SharedAppState.h"
#include "automation/StartRemoteControlIntent.h"
#include "automation/UploadFileIntent.h"
#include "model/ComputerJson.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/AppPaths.h"
#include "platform/PendingActionKeys.h"
#include "platform/SettingsFiles.h"
#include "platform/StagedUploads.h"
#include "state/AppState.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

RemoteComputer makeComputer(const QString &name, const QString &host)
{
    RemoteComputer computer;
    if (!name.isNull())
        computer.name = name;
    computer.host = host;
    return computer;
}

void store(QSettings &settings, const QList<RemoteComputer> &computers)
{
    settings.setValue(QStringLiteral("remoteComputers"), ComputerJson::encodeList(computers));
    settings.sync();
}

bool setModified(const QString &path, int daysAgo)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) &&
           file.setFileTime(QDateTime::currentDateTimeUtc().addDays(-daysAgo),
                            QFileDevice::FileModificationTime);
}

IntentParameters byName(const QString &name)
{
    IntentParameters parameters;
    parameters.computerName = name;
    return parameters;
}

} // namespace

class AutomationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        for (auto open : {&SettingsFiles::openSharedSuite, &SettingsFiles::openStandard}) {
            const auto settings = open();
            settings->clear();
            settings->sync();
        }
        QDir(AppPaths::sharedContainerDirectory()).removeRecursively();
        QVERIFY(m_files.isValid());
    }

    void stagingRejectsWhatCannotBeSent()
    {
        SharedAppState state;
        const QUuid id = QUuid::createUuid();
        auto error = state.stageUpload(writeFile(m_files.filePath("empty"), {}), "empty", id);
        QVERIFY(error);
        QCOMPARE(error->domain, QStringLiteral("Telvane.AppIntentUpload"));
        QCOMPARE(error->code, 2);
        error = state.stageUpload(m_files.path(), "folder", id);
        QVERIFY(error);
        QCOMPARE(error->code, 2);
        QCOMPARE(error->description,
                 QStringLiteral("The selected item is not a non-empty regular file"));
        // Missing source: the file-system error is passed on as is.
        error = state.stageUpload(m_files.filePath("missing"), "missing", id);
        QVERIFY(error);
        QCOMPARE(error->domain, QStringLiteral("POSIX"));
        QCOMPARE(error->code, ENOENT);
        QVERIFY(!SettingsFiles::openSharedSuite()->contains(PendingActionKeys::fileUpload));

        SharedAppState noContainer(SettingsFiles::openSharedSuite(), nullptr, QString());
        error = noContainer.stageUpload(writeFile(m_files.filePath("a"), "x"), "a", id);
        QVERIFY(error);
        QCOMPARE(error->code, 1);
        QCOMPARE(error->description, QStringLiteral("Shared upload directory is unavailable"));
    }

    void secondUploadReplacesTheFirstAndBothCopiesStay()
    {
        SharedAppState state;
        const QUuid id = QUuid::createUuid();
        QVERIFY(!state.stageUpload(writeFile(m_files.filePath("one.txt"), "1"), "one.txt", id));
        QVERIFY(!state.stageUpload(writeFile(m_files.filePath("two.txt"), "22"), "two.txt", id));

        const QVariantMap entry =
            SettingsFiles::openSharedSuite()->value(PendingActionKeys::fileUpload).toMap();
        QCOMPARE(entry.size(), 3);
        QCOMPARE(entry.value("fileName").toString(), QStringLiteral("two.txt"));
        QCOMPARE(entry.value("computerId").toString(), UuidText::format(id));
        const QFileInfo staged(entry.value("fileURL").toString());
        QVERIFY(staged.isAbsolute());
        QCOMPARE(staged.absolutePath(), state.uploadDirectory());
        QVERIFY(staged.fileName().startsWith("appintents_upload_"));
        QVERIFY(UuidText::parse(staged.fileName().mid(18)));
        QCOMPARE(staged.size(), 2);
        QCOMPARE(QDir(state.uploadDirectory()).entryList(QDir::Files).size(), 2);
        // Staged copies may be private documents: the container is the user's alone.
        const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::ExeGroup |
                            QFile::ExeOther | QFile::WriteGroup | QFile::WriteOther;
        QCOMPARE(QFileInfo(QFileInfo(state.uploadDirectory()).absolutePath()).permissions() &
                     others,
                 QFile::Permissions());
    }

    // Once at start, staged copies older than a week that nothing names go; a young copy
    // and the one the queued request names stay.
    void startSweepsOldStagedFilesThatNothingNames()
    {
        SharedAppState automation;
        const QUuid id = QUuid::createUuid();
        // Young by when it was staged, however old the user's file.
        const QString source = writeFile(m_files.filePath("old-report.pdf"), "r");
        QVERIFY(setModified(source, 400));
        QVERIFY(!automation.stageUpload(source, "old-report.pdf", id));
        const QDir staging(automation.uploadDirectory());
        const QString replaced = staging.absoluteFilePath(staging.entryList(QDir::Files).first());
        QVERIFY(!automation.stageUpload(source, "old-report.pdf", id));
        const QString named = SettingsFiles::openSharedSuite()
                                  ->value("pendingFileUpload")
                                  .toMap()
                                  .value("fileURL")
                                  .toString();
        QVERIFY(setModified(named, 30));
        const QString orphan = writeFile(staging.filePath("appintents_upload_orphan"), "o");
        QVERIFY(setModified(orphan, StagedUploads::sweepAgeDays + 1));
        const QString sixDays = writeFile(staging.filePath("appintents_upload_six_days"), "s");
        QVERIFY(setModified(sixDays, StagedUploads::sweepAgeDays - 1));

        LogManager::shared().clearLogs();
        AppState console;
        console.waitForPendingWrites();
        QVERIFY(!QFile::exists(orphan));
        for (const QString &kept : {replaced, named, sixDays})
            QVERIFY2(QFile::exists(kept), qPrintable(kept));
        QTRY_VERIFY(!LogManager::shared()
                         .logs()
                         .filter("[FILE] Removed 1 staged upload(s) older than 7 days")
                         .isEmpty());
    }

    void withoutSuiteTheCopyIsMadeButNothingQueued()
    {
        SharedAppState state(nullptr, nullptr, AppPaths::sharedContainerDirectory());
        QVERIFY(
            !state.stageUpload(writeFile(m_files.filePath("f"), "x"), "f", QUuid::createUuid()));
        QCOMPARE(QDir(state.uploadDirectory()).entryList(QDir::Files).size(), 1);
        QVERIFY(!SettingsFiles::openSharedSuite()->contains(PendingActionKeys::fileUpload));
        QVERIFY(state.loadComputers().isEmpty());
    }

    void loadMigratesTheLegacyListSilently()
    {
        const QList<RemoteComputer> legacy = {makeComputer("Alpha", "a.local"),
                                              makeComputer({}, "b.local")};
        store(*SettingsFiles::openStandard(), legacy);
        // An undecodable shared list counts as empty and is replaced.
        SettingsFiles::openSharedSuite()->setValue("remoteComputers", QByteArray("[{}"));
        SharedAppState state;
        QCOMPARE(state.loadComputers(), legacy);
        QCOMPARE(ComputerJson::decodeList(
                     SettingsFiles::openSharedSuite()->value("remoteComputers").toByteArray()),
                 legacy);
        // A non-empty shared list wins over the legacy one.
        store(*SettingsFiles::openSharedSuite(), {legacy.at(1)});
        QCOMPARE(SharedAppState().loadComputers().size(), 1);
    }

    void nameResolution()
    {
        const RemoteComputer first = makeComputer("Build Server West", "10.0.0.1");
        const RemoteComputer second = makeComputer("build server east", "10.0.0.2");
        const RemoteComputer unnamed = makeComputer("", "studio-mac.lan");
        store(*SettingsFiles::openSharedSuite(), {first, second, unnamed});
        SharedAppState state;
        QCOMPARE(state.findComputer("ILD SER")->id, first.id);
        QCOMPARE(state.findComputer("EAST")->id, second.id);
        QCOMPARE(state.findComputer("DIO-MA")->id, unnamed.id);
        QVERIFY(!state.findComputer("10.0.0")); // named computers are not searched by host
        QVERIFY(!state.findComputer("nowhere"));
    }

    void resolutionPrefersTheEntityAndRejectsBadIds()
    {
        const RemoteComputer alpha = makeComputer("Alpha", "a");
        const RemoteComputer beta = makeComputer("Beta", "b");
        store(*SettingsFiles::openSharedSuite(), {alpha, beta});
        SharedAppState state;
        IntentParameters parameters = byName("alpha");
        parameters.computer = ComputerEntity{UuidText::format(beta.id).toLower(), {}};
        QCOMPARE(StartRemoteControlIntent::perform(state, parameters).text,
                 QStringLiteral("Queued remote control for Beta"));
        QCOMPARE(SettingsFiles::openSharedSuite()->value(PendingActionKeys::remoteControl),
                 QVariant(UuidText::format(beta.id)));
        for (const QString &id :
             {QStringLiteral("not-a-uuid"), UuidText::format(QUuid::createUuid())}) {
            parameters.computer = ComputerEntity{id, {}};
            QCOMPARE(StartRemoteControlIntent::perform(state, parameters).error->description,
                     QStringLiteral("Computer not found"));
        }
        QVERIFY(!ConnectToComputerIntent::perform(state, {}).isSuccess());
    }

    void statusTexts()
    {
        SharedAppState state;
        IntentResult result = GetComputerStatusIntent::perform(state, {});
        QVERIFY(result.isSuccess());
        QCOMPARE(result.text, QString());
        store(*SettingsFiles::openSharedSuite(),
              {makeComputer("Alpha", "a"), makeComputer({}, "b.local")});
        QCOMPARE(GetComputerStatusIntent::perform(state, {}).text,
                 QStringLiteral("Alpha: Disconnected (status not available via AppIntents)\n"
                                "b.local: Disconnected (status not available via AppIntents)"));
        QCOMPARE(GetComputerStatusIntent::perform(state, byName("LOCAL")).text,
                 QStringLiteral("b.local status check requested"));
        QCOMPARE(GetComputerStatusIntent::perform(state, byName("zzz")).error->description,
                 QStringLiteral("Computer not found"));
    }

    void uploadChecksTheFileFirst()
    {
        SharedAppState state;
        QCOMPARE(UploadFileIntent::perform(state, byName("nothing stored")).error->description,
                 QStringLiteral("File not provided"));
        const RemoteComputer alpha = makeComputer("Alpha", "a");
        store(*SettingsFiles::openSharedSuite(), {alpha});
        IntentParameters parameters = byName("alp");
        parameters.file =
            IntentParameters::File{writeFile(m_files.filePath("r.pdf"), "pdf"), "r.pdf"};
        QCOMPARE(UploadFileIntent::perform(state, parameters).text,
                 QStringLiteral("Queued upload of r.pdf to Alpha"));
        parameters.file->location.reset();
        QCOMPARE(UploadFileIntent::perform(state, parameters).error->description,
                 QStringLiteral("File not provided"));
    }

private:
    QTemporaryDir m_files;
};

QTEST_GUILESS_MAIN(AutomationTest)
#include "AutomationTest.moc"
