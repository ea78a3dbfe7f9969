// The Help menu on a plain main window: its items in order, the exact address each one opens
// (caught by a URL handler, as the desktop would get it), and bad host overrides opening nothing.
#include "app/HelpMenu.h"
#include "LogLines.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>

// Stands in for the desktop's browser.
class UrlCatcher : public QObject {
    Q_OBJECT

public:
    QStringList opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened << QString::fromLatin1(url.toEncoded()); }
};

class HelpMenuTest : public QObject {
    Q_OBJECT

private:
    UrlCatcher m_catcher;
    QMainWindow *m_window = nullptr;
    HelpMenu *m_help = nullptr;
    QStringList m_assistantShown;
    int m_aboutShown = 0;

    QStringList triggerAll()
    {
        m_catcher.opened.clear();
        m_assistantShown.clear();
        for (qsizetype i = 0; i < HelpMenuItem::all().size(); ++i)
            m_help->action(i)->trigger();
        return m_catcher.opened + m_assistantShown;
    }

private Q_SLOTS:
    void init()
    {
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &m_catcher, "open");
        QDesktopServices::setUrlHandler(QStringLiteral("http"), &m_catcher, "open");
        m_window = new QMainWindow;
        m_help = new HelpMenu(m_window->menuBar()->addMenu(QStringLiteral("Help")));
        m_help->setShowAssistant(
            [this](const QUrl &url) { m_assistantShown << QString::fromLatin1(url.toEncoded()); });
        m_help->setShowAbout([this] { ++m_aboutShown; });
        m_aboutShown = 0;
    }

    void cleanup()
    {
        delete m_window;
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
        qunsetenv("TELVANE_WEB_HOST");
        qunsetenv("TELVANE_DOWNLOAD_HOST");
    }

    void itemsInOrderWithTheirSeparators()
    {
        QStringList texts;
        for (const QAction *action : m_window->menuBar()->actions().first()->menu()->actions())
            texts << (action->isSeparator() ? QStringLiteral("--") : action->text());
        QCOMPARE(texts,
                 QStringList({"--", "Download TelvaneAgent (freeware)", "--", "AI Assistant", "--",
                              "Community", "Frequently Asked Questions", "Share a Bug Report",
                              "Send a Feature Request", "--", "About Telvane"}));
    }

    void addresses_data()
    {
        QTest::addColumn<QByteArray>("webHost");
        QTest::addColumn<QByteArray>("downloadHost");
        QTest::addColumn<QStringList>("opened");
        // Web pages first (in menu order), then what the assistant was given.
        QTest::newRow("built-in hosts")
            << QByteArray() << QByteArray()
            << QStringList{"https://download.quorvel.com/TelvaneAgent.dmg",
                           "https://www.quorvel.com/support",
                           "https://www.quorvel.com/support/faq",
                           "https://www.quorvel.com/support/ticket_create?category=Bug%20Report",
                           "https://www.quorvel.com/support/ticket_create"
                           "?category=Feature%20Request",
                           "https://www.quorvel.com/aichat"};
        QTest::newRow("test servers")
            << QByteArray("http://127.0.0.1:8431") << QByteArray("http://127.0.0.1:8432/")
            << QStringList{"http://127.0.0.1:8432/TelvaneAgent.dmg",
                           "http://127.0.0.1:8431/support",
                           "http://127.0.0.1:8431/support/faq",
                           "http://127.0.0.1:8431/support/ticket_create?category=Bug%20Report",
                           "http://127.0.0.1:8431/support/ticket_create"
                           "?category=Feature%20Request",
                           "http://127.0.0.1:8431/aichat"};
    }

    void addresses()
    {
        QFETCH(QByteArray, webHost);
        QFETCH(QByteArray, downloadHost);
        QFETCH(QStringList, opened);
        if (!webHost.isEmpty())
            qputenv("TELVANE_WEB_HOST", webHost);
        if (!downloadHost.isEmpty())
            qputenv("TELVANE_DOWNLOAD_HOST", downloadHost);
        QCOMPARE(triggerAll(), opened);
        QCOMPARE(m_aboutShown, 1);
    }

    void badOverridesOpenNothing_data()
    {
        QTest::addColumn<QByteArray>("host");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("path") << QByteArray("https://www.example.org/telvane");
        QTest::newRow("space") << QByteArray("https://www.exa mple.org");
        QTest::newRow("scheme") << QByteArray("ftp://www.example.org");
        QTest::newRow("port") << QByteArray("http://127.0.0.1:65536");
    }

    void badOverridesOpenNothing()
    {
        QFETCH(QByteArray, host);
        qputenv("TELVANE_WEB_HOST", host);
        qputenv("TELVANE_DOWNLOAD_HOST", host);
        LogLines::clear();
        QCOMPARE(triggerAll(), QStringList());
        QCOMPARE(triggerAll(), QStringList());
        // One line for the bad base however often it was asked for, and no box.
        QCOMPARE(LogLines::countStartingWith(
                     QStringLiteral("Web address base \"%1\"").arg(QString::fromLatin1(host))),
                 1);
        for (QWidget *widget : QApplication::topLevelWidgets())
            QVERIFY(!qobject_cast<QMessageBox *>(widget));
    }

    void missingWindowsAreLoggedOnce()
    {
        auto *help = new HelpMenu(new QMenu(m_window));
        LogLines::clear();
        for (int round = 0; round < 2; ++round) {
            for (qsizetype i = 0; i < HelpMenuItem::all().size(); ++i) {
                if (HelpMenuItem::all()[i].action != HelpMenuItem::Action::OpenWebPage &&
                    HelpMenuItem::all()[i].action != HelpMenuItem::Action::OpenDownload)
                    help->action(i)->trigger();
            }
        }
        QCOMPARE(LogLines::countStartingWith("The Help menu cannot show the About window"), 1);
        QCOMPARE(LogLines::countStartingWith("The Help menu cannot show the assistant panel"), 1);
    }
};

QTEST_MAIN(HelpMenuTest)
#include "HelpMenuTest.moc"
