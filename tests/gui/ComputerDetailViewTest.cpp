// The computer detail: its action bar and header follow the store, removal is confirmed
// (never by Return), the form and remote-control seams, uploads, and keyboard use.
#include "ui/ComputerDetailView.h"
#include "ScriptedAlertPresenter.h"
#include "model/LogManager.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "ui/ComputerFormFactory.h"
#include "ui/QtAlertPresenter.h"
#include "ui/RemoteControlWindowFactory.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTemporaryFile>
#include <QTest>

namespace {

// Keeps the completion of the one alert shown until the test answers it.
class HeldAlertPresenter : public AlertPresenter {
public:
    int runModal(const Alert &, Handle) override { return closed; }
    void abortModal(Handle) override {}
    void show(const Alert &, Completion completion) override { pending = std::move(completion); }
    Completion pending;
};

class Factories : public ComputerFormFactory, public RemoteControlWindowFactory {
public:
    QStringList calls;
    void openAddForm(QWidget *) override { calls << "add"; }
    void openEditForm(const QUuid &, QWidget *parent) override
    {
        calls << (parent ? "edit over its view" : "edit");
    }
    QObject *openRemoteControlWindow(const QUuid &) override
    {
        calls << "remote control";
        return new QObject(&owner);
    }
    QObject owner;
};

// "label enabled" per button of the bar.
QStringList bar(const ComputerDetailView &view)
{
    QStringList buttons;
    for (const QPushButton *button : view.actionButtons())
        buttons << button->text() + (button->isEnabled() ? " on" : " off");
    return buttons;
}

bool showsText(const QWidget &view, const QString &text)
{
    const QList<QLabel *> labels = view.findChildren<QLabel *>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
        return label->isVisibleTo(&view) && label->text() == text;
    });
}

int logLinesWith(const QString &text)
{
    return int(LogManager::shared().logs().filter(text).size());
}

RemoteComputer studio()
{
    RemoteComputer computer;
    computer.name = QStringLiteral("Studio");
    computer.host = QStringLiteral("studio.local");
    return computer;
}

} // namespace

class ComputerDetailViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove(SettingsFiles::sharedSuitePath()); }

    void actionBarAndHeaderFollowTheConnection()
    {
        AppState state;
        const RemoteComputer computer = studio();
        state.addComputer(computer);
        ComputerDetailView view(state, computer.id, nullptr, nullptr);
        QCOMPARE(bar(view), (QStringList{"Connect on", "Remote Control off", "Upload File off",
                                         "Edit on", "Remove on"}));
        QVERIFY(!view.updatePreviewButton()->isEnabled());

        state.updateConnectingStatus(computer.id, true);
        QCOMPARE(bar(view), (QStringList{"Connecting... off", "Remote Control off",
                                         "Upload File off", "Edit on", "Remove on"}));
        QVERIFY(showsText(view, "Starting connection..."));

        state.updateConnectionStatus(computer.id, true);
        QCOMPARE(bar(view), (QStringList{"Disconnect on", "Remote Control on", "Upload File on",
                                         "Edit off", "Remove off"}));
        QVERIFY(view.updatePreviewButton()->isEnabled());
        QVERIFY(showsText(view, "Live data from the connected Mac"));

        state.updateConnectionStatus(computer.id, false, QStringLiteral("Connection refused"));
        QCOMPARE(bar(view).first(), QStringLiteral("Connect on"));
        QVERIFY(showsText(view, "Connection refused"));
        QVERIFY(showsText(view, "Last known data is shown when available"));
        state.waitForPendingWrites();
    }

    void returnNeverConfirmsTheRemoval()
    {
        AppState state;
        const RemoteComputer computer = studio();
        state.addComputer(computer);
        QtAlertPresenter presenter;
        ComputerDetailView view(state, computer.id, nullptr, nullptr, nullptr, &presenter);
        QSignalSpy removals(&view, &ComputerDetailView::removeRequested);
        view.actionButtons().at(ComputerPreviewViewSnapshot::removeAction)->click();
        QMessageBox *box = nullptr;
        QTRY_VERIFY((box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())));
        QCOMPARE(box->text(), QStringLiteral("Remove Computer"));
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_VERIFY(!QApplication::activeModalWidget());
        QCOMPARE(removals.size(), 0);
        state.waitForPendingWrites();
    }

    void removalAsksFirstAndRemovesOnlyWhatIsThere()
    {
        AppState state;
        const RemoteComputer computer = studio();
        state.addComputer(computer);
        ScriptedAlertPresenter scripted;
        scripted.script = {1, 0}; // Cancel, then Remove
        ComputerDetailView view(state, computer.id, nullptr, nullptr, nullptr, &scripted);
        QSignalSpy removals(&view, &ComputerDetailView::removeRequested);
        QPushButton *remove = view.actionButtons().at(ComputerPreviewViewSnapshot::removeAction);
        remove->click();
        QTRY_COMPARE(scripted.asyncAnswers.size(), 1);
        QCOMPARE(removals.size(), 0);
        remove->click();
        QTRY_COMPARE(removals.size(), 1);
        QCOMPARE(scripted.shown.last().buttons.at(scripted.shown.last().destructiveButton),
                 QStringLiteral("Remove"));

        // Removed elsewhere while the confirmation is open: confirming removes nothing.
        HeldAlertPresenter held;
        ComputerDetailView other(state, computer.id, nullptr, nullptr, nullptr, &held);
        QSignalSpy otherRemovals(&other, &ComputerDetailView::removeRequested);
        other.actionButtons().at(ComputerPreviewViewSnapshot::removeAction)->click();
        QVERIFY(held.pending);
        state.removeComputer(computer.id);
        held.pending(0);
        QCOMPARE(otherRemovals.size(), 0);
        state.waitForPendingWrites();
    }

    void aRemovedComputerKeepsItsValuesAndActsOnNothing()
    {
        AppState state;
        RemoteComputer computer = studio();
        computer.description = QStringLiteral("Editing suite");
        state.addComputer(computer);
        state.updateConnectionStatus(computer.id, true);
        Factories factories;
        ComputerDetailView view(state, computer.id, &factories, &factories);
        QSignalSpy disconnects(&view, &ComputerDetailView::disconnectRequested);
        state.removeComputer(computer.id);

        QVERIFY(showsText(view, "Studio") && showsText(view, "Editing suite"));
        QCOMPARE(bar(view).first(), QStringLiteral("Disconnect on")); // as last known
        for (QPushButton *button : view.actionButtons())
            button->click();
        QCOMPARE(disconnects.size(), 0);
        QVERIFY(factories.calls.isEmpty());
        state.waitForPendingWrites();
    }

    void formsAndRemoteControlOpenThroughTheirFactories()
    {
        AppState state;
        const RemoteComputer computer = studio();
        state.addComputer(computer);
        Factories factories;
        {
            ComputerDetailView view(state, computer.id, &factories, &factories);
            view.actionButtons().at(ComputerPreviewViewSnapshot::editAction)->click();
            state.updateConnectionStatus(computer.id, true);
            QPushButton *remote =
                view.actionButtons().at(ComputerPreviewViewSnapshot::remoteControlAction);
            remote->click();
            QObject *first = view.remoteControlWindowController();
            remote->click(); // every press opens a new window; the last one is kept
            QVERIFY(view.remoteControlWindowController() &&
                    view.remoteControlWindowController() != first);
            QCOMPARE(factories.calls,
                     (QStringList{"edit over its view", "remote control", "remote control"}));
        }

        // Without factories each button says once that it is not available.
        ComputerDetailView bare(state, computer.id, nullptr, nullptr);
        QPushButton *remote =
            bare.actionButtons().at(ComputerPreviewViewSnapshot::remoteControlAction);
        remote->click();
        remote->click();
        QTRY_COMPARE(logLinesWith("Remote control is not available in this build"), 1);
        state.updateConnectionStatus(computer.id, false);
        QPushButton *edit = bare.actionButtons().at(ComputerPreviewViewSnapshot::editAction);
        edit->click();
        edit->click();
        QTRY_COMPARE(logLinesWith("Editing computers is not available in this build"), 1);
        state.waitForPendingWrites();
    }

    void uploadsOneChosenFileAndShowsItsProgress()
    {
        AppState state;
        const RemoteComputer computer = studio();
        state.addComputer(computer);
        state.updateConnectionStatus(computer.id, true);
        ComputerDetailView view(state, computer.id, nullptr, nullptr);
        view.show();
        QSignalSpy uploads(&view, &ComputerDetailView::fileTransferRequested);
        view.actionButtons().at(ComputerPreviewViewSnapshot::uploadAction)->click();
        auto *dialog = view.findChild<QFileDialog *>();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFile);
        QTemporaryFile file;
        QVERIFY(file.open());
        dialog->selectFile(file.fileName());
        QMetaObject::invokeMethod(dialog, "accept");
        QCOMPARE(uploads.size(), 1);
        QCOMPARE(uploads.first().at(1).toString(), file.fileName());

        state.beginFileTransfer(QStringLiteral("report.pdf"));
        QTRY_VERIFY(view.findChild<QProgressBar *>()->isVisible());
        state.completeFileTransfer(QStringLiteral("Upload complete"));
        QTRY_VERIFY(!view.findChild<QProgressBar *>()->isVisible());
        state.waitForPendingWrites();
    }

    void tabFollowsReadingOrder()
    {
        AppState state;
        const RemoteComputer computer = studio();
        state.addComputer(computer);
        state.updateConnectionStatus(computer.id, true);
        ComputerDetailView view(state, computer.id, nullptr, nullptr);
        view.resize(800, 600);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.setSelectedSegment(DetailSegment::preview);

        QList<QWidget *> expected;
        for (QPushButton *button : view.actionButtons()) {
            if (button->isEnabled()) // Edit and Remove wait while connected
                expected << button;
        }
        expected << view.findChild<QTabBar *>() << view.updatePreviewButton();
        expected.first()->setFocus();
        QTRY_VERIFY(expected.first()->hasFocus());
        // Tab follows reading order: the enabled actions, the segments, the page.
        QList<QWidget *> reached{expected.first()};
        while (reached.size() < expected.size()) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached << QApplication::focusWidget();
        }
        QCOMPARE(reached, expected);
        for (const QLabel *label : view.findChildren<QLabel *>()) {
            if (label->text().isEmpty() && !label->pixmap().isNull())
                QVERIFY(!label->accessibleName().isEmpty()); // symbols say what they are
        }
        state.waitForPendingWrites();
    }
};

QTEST_MAIN(ComputerDetailViewTest)
#include "ComputerDetailViewTest.moc"
