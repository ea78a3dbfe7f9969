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
