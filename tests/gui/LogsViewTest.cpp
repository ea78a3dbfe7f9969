// The log viewer on the real log: the count and the empty state, "Copy All" and "Clear
// Logs", and the list following the end only while the user is there.
#include "ui/LogsView.h"
#include "model/LogManager.h"
#include "presentation/LogListModel.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

class LogsViewTest : public QObject {
    Q_OBJECT

    // Logs and waits until the view's model shows it.
    static void logAndWait(LogsView &view, int count, int first = 1)
    {
        const int before = view.model()->rowCount();
        for (int i = first; i < first + count; ++i)
            LogManager::shared().log(QStringLiteral("entry %1").arg(i), QStringLiteral("UI"));
        QTRY_COMPARE(view.model()->rowCount(), std::min(before + count, LogManager::maxLogs));
        QTRY_COMPARE(view.model()->index(view.model()->rowCount() - 1).data().toString(),
                     LogManager::shared().logs().last());
    }

private Q_SLOTS:
    void init()
    {
        LogManager::shared().clearLogs();
        QTRY_VERIFY(LogManager::shared().logs().isEmpty());
    }

    void countEmptyStateCopyAndClear()
    {
        LogsView view(LogManager::shared());
        view.resize(700, 500);
        view.show();
        QVERIFY(view.isShowingEmptyState());
        QCOMPARE(view.countLabel()->text(), QStringLiteral("0 log entries"));
        QApplication::clipboard()->setText(QStringLiteral("stale"));
        view.copyAllButton()->click();
        QCOMPARE(QApplication::clipboard()->text(), QString());

        logAndWait(view, 1);
        QVERIFY(!view.isShowingEmptyState());
        QCOMPARE(view.countLabel()->text(), QStringLiteral("1 log entries"));
        logAndWait(view, 1, 2);
        view.copyAllButton()->click();
        QCOMPARE(QApplication::clipboard()->text(), LogManager::shared().logs().join('\n'));

        view.clearButton()->click();
        QTRY_VERIFY(view.isShowingEmptyState());
        QCOMPARE(view.countLabel()->text(), QStringLiteral("0 log entries"));
    }

    void followsTheEndOnlyWhileTheUserIsThere()
    {
        LogsView view(LogManager::shared());
        view.resize(700, 400);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QSignalSpy resets(view.model(), &QAbstractItemModel::modelReset);
        QScrollBar *bar = view.list()->verticalScrollBar();
        logAndWait(view, 300);
        QTRY_VERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), bar->maximum());
        logAndWait(view, 20, 301);
        QTRY_COMPARE(bar->value(), bar->maximum());

        // Scrolled up: new entries and those dropped from the front leave the rows in view.
        bar->setValue(100);
        const QString shown = view.list()->indexAt(QPoint(5, 5)).data().toString();
        logAndWait(view, LogManager::maxLogs - 320 + 40, 321); // 40 beyond the bound
        QCOMPARE(view.model()->rowCount(), LogManager::maxLogs);
        QCOMPARE(view.list()->indexAt(QPoint(5, 5)).data().toString(), shown);
        QVERIFY(bar->value() < bar->maximum());

        // Back at the end, it follows again; never a reset.
        bar->setValue(bar->maximum());
        logAndWait(view, 5, 9000);
        QTRY_COMPARE(bar->value(), bar->maximum());
        QCOMPARE(resets.size(), 0);
    }
};

QTEST_MAIN(LogsViewTest)
#include "LogsViewTest.moc"
