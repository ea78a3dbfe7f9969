#include "ScriptedDiscoveryBackend.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "discovery/forms/AddComputerView.h"
#include "discovery/forms/EditComputerView.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "ui/AddComputerDialog.h"
#include "ui/DialogComputerFormFactory.h"
#include "ui/EditComputerDialog.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace {

QPushButton *button(QWidget &dialog, const QString &text)
{
    for (QPushButton *b : dialog.findChildren<QPushButton *>()) {
        if (b->text() == text && b->isVisibleTo(&dialog))
            return b;
    }
    return nullptr;
}

QLineEdit *field(QWidget &dialog, const QString &label)
{
    for (QLineEdit *edit : dialog.findChildren<QLineEdit *>()) {
        if (edit->accessibleName() == label)
            return edit;
    }
    return nullptr;
}

void type(QLineEdit *edit, const QString &text)
{
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

// Every control a person can reach is named for a screen reader.
void verifyAccessibleNames(QWidget &dialog)
{
    for (QWidget *widget : dialog.findChildren<QWidget *>()) {
        if (qobject_cast<QLineEdit *>(widget) || qobject_cast<QPushButton *>(widget) ||
            qobject_cast<QListView *>(widget))
            QVERIFY2(!widget->accessibleName().isEmpty(), widget->metaObject()->className());
    }
}

struct AddDialogHarness {
    AddDialogHarness()
    {
        auto scripted = std::make_unique<ScriptedDiscoveryBackend>();
        backend = scripted.get();
        discovery = std::make_unique<BonjourDiscoveryManager>(std::move(scripted));
        dialog = new AddComputerDialog(new AddComputerView(state, *discovery));
        dialog->show();
    }
    ~AddDialogHarness()
    {
        delete dialog;
        state.waitForPendingWrites();
    }

    AppState state;
    ScriptedDiscoveryBackend *backend;
    std::unique_ptr<BonjourDiscoveryManager> discovery;
    QPointer<AddComputerDialog> dialog;
};

} // namespace

class ComputerFormDialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QFile::remove(SettingsFiles::sharedSuitePath()); }

    void addDialogPressesAddNowOnReturnFromEveryControl()
    {
        AddDialogHarness f;
        AddComputerDialog &dialog = *f.dialog;
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        f.backend->found("Studio");
        QCoreApplication::processEvents();
        f.backend->resolved("Studio", "studio.local", 5905, {"name=Studio Mac"});
        QTRY_VERIFY(button(dialog, "Search again") == nullptr); // still searching, rows shown
        auto *list = dialog.findChild<QListView *>();
        QTRY_COMPARE(list->model()->rowCount(), 1);
        verifyAccessibleNames(dialog);

        QPushButton *add = button(dialog, "Add Now");
        QVERIFY(!add->isEnabled());
        // Picked with the keyboard: the fields follow the row.
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(dialog.view().host(), QStringLiteral("studio.local"));
        type(field(dialog, "Username"), "admin");
        QVERIFY(!add->isEnabled());
        type(field(dialog, "Password"), " ");
        QVERIFY(add->isEnabled());

        // Hand entry with a port that does not parse: "Add Now" is pressed but adds nothing
        // and hands the focus to the port.
        QTest::mouseClick(button(dialog, "Add custom computer or server..."), Qt::LeftButton);
        QVERIFY(field(dialog, "Computer IP Address")->hasFocus());
        QLineEdit *port = field(dialog, "Used Port Number");
        QCOMPARE(field(dialog, "Computer Name (optional)")->text(), QStringLiteral("Studio Mac"));
        type(port, "59 05");
        verifyAccessibleNames(dialog);
        QSignalSpy pressed(add, &QPushButton::clicked);
        int expected = 0;
        for (QWidget *control : dialog.findChildren<QWidget *>()) {
            if (!control->isVisible() || !control->isEnabled() ||
                !(qobject_cast<QLineEdit *>(control) || qobject_cast<QPushButton *>(control) ||
                  qobject_cast<QListView *>(control)))
                continue;
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Return);
            QVERIFY2(pressed.size() == ++expected, qPrintable(control->accessibleName()));
            QVERIFY(port->hasFocus());
        }
        QVERIFY(expected >= 9);
        QVERIFY(f.state.computers().isEmpty());

        type(port, "6000");
        QTest::keyClick(port, Qt::Key_Enter);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(f.state.computers().size(), 1);
        QCOMPARE(f.state.computers().first().connectionString(),
                 QStringLiteral("studio.local:6000"));
        QVERIFY(f.backend->calls.contains("stop 1"));
    }

    void addDialogStatesAndEscape()
    {
        AddDialogHarness f;
        AddComputerDialog &dialog = *f.dialog;
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const auto shown = [&dialog](const QString &text) {
            for (QLabel *label : dialog.findChildren<QLabel *>()) {
                if (label->text() == text && label->isVisibleTo(&dialog))
                    return true;
            }
            return false;
        };
        QVERIFY(shown("Searching for computers or servers..."));
        QVERIFY(!button(dialog, "Search again"));
        f.discovery->stopDiscovery();
        QTRY_VERIFY(shown("No new computers or servers found"));
        QVERIFY(button(dialog, "Search again"));
        QVERIFY(!shown("Computers or servers found on your local network"));

        QTest::mouseClick(button(dialog, "Search again"), Qt::LeftButton);
        QVERIFY(shown("Searching for computers or servers..."));
        QTest::keyClick(field(dialog, "Username"), Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
        QCoreApplication::processEvents();
        QVERIFY(!f.discovery->isDiscovering());
        QVERIFY(f.state.computers().isEmpty());
    }

    void editDialogShowsEachErrorUnderItsField()
    {
        AppState state;
        RemoteComputer computer;
        computer.name = "Lab";
        computer.host = "lab.local";
        computer.username = "admin";
        state.addComputer(computer);
        EditComputerDialog dialog(new EditComputerView(state, computer));
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        verifyAccessibleNames(dialog);
        QPushButton *save = button(dialog, "Save Changes");
        QVERIFY(!save->isEnabled()); // no password
        QLineEdit *password = field(dialog, "Password");
        QCOMPARE(password->accessibleDescription(), QStringLiteral("Password is required"));
        const auto errorUnder = [&dialog](QLineEdit *edit) {
            for (QLabel *label : edit->parentWidget()->findChildren<QLabel *>()) {
                if (label->isVisibleTo(&dialog) && label->text().contains("required"))
                    return label->text();
            }
            return QString();
        };
        QCOMPARE(errorUnder(password), QStringLiteral("Password is required"));
        QTest::keyClick(password, Qt::Key_Return); // disabled: nothing
        QVERIFY(dialog.isVisible());

        type(password, "pw");
        QVERIFY(save->isEnabled());
        // Keyboard order follows the sections, then the buttons.
        field(dialog, "Computer Name (optional)")->setFocus();
        QStringList order;
        for (int i = 0; i < 9; ++i) {
            order << QApplication::focusWidget()->accessibleName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order, (QStringList{"Computer Name (optional)", "Remote IP Address", "Port",
                                     "Username", "Password", "Description (optional)",
                                     "Tags (comma-separated)", "Cancel", "Save Changes"}));
        QCOMPARE(errorUnder(password), QString());
        type(field(dialog, "Remote IP Address"), "");
        QTest::keyClick(field(dialog, "Remote IP Address"), Qt::Key_Backspace);
        QVERIFY(!save->isEnabled());
        type(field(dialog, "Remote IP Address"), "new.local");
        type(field(dialog, "Tags (comma-separated)"), "a, b,,c");
        QTest::keyClick(field(dialog, "Tags (comma-separated)"), Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(state.computer(computer.id)->host, QStringLiteral("new.local"));
        QCOMPARE(state.computer(computer.id)->tags, (QStringList{"a", "b", "c"}));
        state.waitForPendingWrites();
    }

    void factoryOpensWindowModalDialogsThatEscapeCloses()
    {
        AppState state;
        BonjourDiscoveryManager discovery(std::make_unique<ScriptedDiscoveryBackend>());
        RemoteComputer computer;
        computer.host = "lab.local";
        state.addComputer(computer);
        DialogComputerFormFactory factory(state, discovery);
        QWidget window;
        window.show();
        factory.openEditForm(QUuid::createUuid(), &window); // unknown: nothing opens
        QVERIFY(window.findChildren<QDialog *>().isEmpty());
        factory.openEditForm(computer.id, &window);
        factory.openAddForm(&window);
        const QList<QDialog *> dialogs = window.findChildren<QDialog *>();
        QCOMPARE(dialogs.size(), 2);
        for (QDialog *dialog : dialogs) {
            QVERIFY(dialog->isVisible());
            QCOMPARE(dialog->windowModality(), Qt::WindowModal);
            QPointer<QDialog> alive(dialog);
            QTest::keyClick(dialog, Qt::Key_Escape);
            QTRY_VERIFY(!alive); // deleted once closed
        }
        QCOMPARE(*state.computer(computer.id), computer);
        state.waitForPendingWrites();
    }
};

QTEST_MAIN(ComputerFormDialogsTest)
#include "ComputerFormDialogsTest.moc"
