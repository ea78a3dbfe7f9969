// Message-box alerts: answered by a button, aborted from code, shown without blocking.
#include "ui/QtAlertPresenter.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

Alert question()
{
    return Alert{Alert::Style::warning, "Server Identity Changed", "text", {"Trust", "Reject"}};
}

QMessageBox *openBox()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *box = qobject_cast<QMessageBox *>(widget); box && box->isVisible())
            return box;
    }
    return nullptr;
}

void clickLater(const QString &title)
{
    QTimer::singleShot(50, [title] {
        for (QAbstractButton *button : openBox()->buttons()) {
            if (button->text() == title)
                button->click();
        }
    });
}

} // namespace

class QtAlertPresenterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void modalAnswersAndAborts()
    {
        QtAlertPresenter presenter;
        clickLater("Reject");
        QCOMPARE(presenter.runModal(question(), presenter.newHandle()), 1);
        clickLater("Trust");
        QCOMPARE(presenter.runModal(question(), presenter.newHandle()), 0);

        const auto handle = presenter.newHandle();
        QTimer::singleShot(50, [&] { presenter.abortModal(handle); });
        QCOMPARE(presenter.runModal(question(), handle), AlertPresenter::closed);
        QTRY_VERIFY(!openBox());

        const auto early = presenter.newHandle();
        presenter.abortModal(early);
        QCOMPARE(presenter.runModal(question(), early), AlertPresenter::closed);
    }

    // Return presses the default button, Escape the cancel button; a destructive button is
    // never the default.
    void keysNeverPressADestructiveButton_data()
    {
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<int>("destructive");
        QTest::addColumn<int>("cancel");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("expected");
        const QStringList removeFirst{"Remove", "Cancel"};
        QTest::newRow("Return, destructive first")
            << removeFirst << 0 << 1 << int(Qt::Key_Return) << 1;
        QTest::newRow("Enter, destructive first")
            << removeFirst << 0 << 1 << int(Qt::Key_Enter) << 1;
        QTest::newRow("Escape, destructive first")
            << removeFirst << 0 << 1 << int(Qt::Key_Escape) << 1;
        const QStringList cancelFirst{"Cancel", "Remove"};
        QTest::newRow("Return, cancel first") << cancelFirst << 1 << 0 << int(Qt::Key_Return) << 0;
        QTest::newRow("Return, no cancel button")
            << QStringList{"Remove", "Keep"} << 0 << int(Alert::none) << int(Qt::Key_Return) << 1;
        const QStringList plain{"Trust", "Reject"};
        QTest::newRow("Return, nothing destructive")
            << plain << int(Alert::none) << int(Alert::none) << int(Qt::Key_Return) << 0;
        QTest::newRow("Escape, nothing named")
            << plain << int(Alert::none) << int(Alert::none) << int(Qt::Key_Escape) << 1;
    }

    void keysNeverPressADestructiveButton()
    {
        QFETCH(QStringList, buttons);
        QFETCH(int, destructive);
        QFETCH(int, cancel);
        QFETCH(int, key);
        QFETCH(int, expected);
        QtAlertPresenter presenter;
        Alert alert{Alert::Style::warning, "Remove Computer", "text", buttons};
        alert.destructiveButton = destructive;
        alert.cancelButton = cancel;
        QTimer::singleShot(50, [key] { QTest::keyClick(openBox(), Qt::Key(key)); });
        QCOMPARE(presenter.runModal(alert, presenter.newHandle()), expected);
    }

    void asynchronousAlert()
    {
        QtAlertPresenter presenter;
        int answer = -5;
        presenter.show(question(), [&](int button) { answer = button; });
        QVERIFY(openBox());
        QCOMPARE(openBox()->defaultButton()->text(), QStringLiteral("Trust"));
        clickLater("Trust");
        QTRY_COMPARE(answer, 0);
    }
};

QTEST_MAIN(QtAlertPresenterTest)
#include "QtAlertPresenterTest.moc"
