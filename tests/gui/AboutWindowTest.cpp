#include "EventLoopWait.h"
#include "LocalWebServer.h"
#include "ScriptedAlertPresenter.h"

#include "services/UpdateCheckCoordinator.h"
#include "services/windows/AboutView.h"
#include "services/windows/AboutWindowController.h"
#include "services/windows/DiskImageDownloadSession.h"
#include "services/windows/UpdateDownloadSheet.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

// Catches what the window hands to the desktop's default handler.
class OpenedUrls : public QObject {
    Q_OBJECT

public:
    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl &url) { urls.append(url); }
};

// The About window and the update sheet, with the feed and the installer on 127.0.0.1.
class AboutWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        qputenv("TELVANE_WEB_HOST", m_server.base().toLatin1());
        qputenv("TELVANE_DOWNLOAD_HOST", m_server.base().toLatin1());
        QDesktopServices::setUrlHandler(QStringLiteral("http"), &m_opened, "open");
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(QStringLiteral("http")); }

    void oneWindowCentredAndKeptWhenClosed()
    {
        AboutWindowController &controller = AboutWindowController::shared();
        QCOMPARE(&controller, &AboutWindowController::shared());
        QWidget *window = controller.window();
        QCOMPARE(window->size(), QSize(580, 400));
        const QPoint centre = QGuiApplication::primaryScreen()->availableGeometry().center();
        QVERIFY((window->geometry().center() - centre).manhattanLength() <= 2);
        controller.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QVERIFY(labelTexts(window).contains(QStringLiteral("Telvane")));
        QVERIFY(labelTexts(window).contains(QStringLiteral("Made by")));
        EventLoopWait::runFor(600); // the logo's fade-in
        saveScreenshot(window->grab().toImage(), "about-window.png");

        QPointer<QWidget> kept = window;
        window->close();
        QVERIFY(kept && !kept->isVisible());
        controller.showWindow();
        QVERIFY(kept->isVisible());
    }

    void linksOpenTheMakersPages()
    {
        AboutView view(&m_alerts);
        const QStringList titles{"Website", "Community", "FAQs", "Feature Request", "Bug report"};
        const QStringList addresses{"/", "/support", "/support/faq",
                                    "/support/ticket_create?category=Feature%20Request",
                                    "/support/ticket_create?category=Bug%20Report"};
        m_opened.urls.clear();
        for (const QString &title : titles)
            button(&view, title)->click();
        QCOMPARE(m_opened.urls.size(), addresses.size());
        for (int i = 0; i < addresses.size(); ++i)
            QCOMPARE(m_opened.urls[i].toString(QUrl::FullyEncoded), m_server.base() + addresses[i]);
    }

    void anOfferOpensTheSheetAndDownloadsIntoIt()
    {
        LocalWebServer::Response feed;
        feed.body = "9.0.0|Major|Faster screens.\nFewer dropped sessions.|" +
                    m_server.base().toLatin1() + "/Telvane.dmg";
        m_server.route(QStringLiteral("/updates/telvane.txt"), feed);
        LocalWebServer::Response installer;
        installer.body = QByteArray(2 * 1024 * 1024, 'i');
        installer.contentType = "application/octet-stream";
        installer.bytesPerTick = 16 * 1024;
        m_server.route(QStringLiteral("/Telvane.dmg"), installer);

        QWidget window;
        window.resize(580, 400);
        auto *view = new AboutView(&m_alerts, &window);
        view->resize(window.size());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        view->checkForUpdatesButton()->click();
        QVERIFY(EventLoopWait::until([view] { return view->sheet() != nullptr; }, 10000));
        QPointer<UpdateDownloadSheet> sheet = view->sheet();
        QVERIFY(EventLoopWait::until([&sheet] { return sheet->isVisible(); }, 5000));
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QVERIFY(labelTexts(sheet).contains(QStringLiteral("Version 9.0.0 is ready to download.")));
        QVERIFY(labelTexts(sheet).contains(QStringLiteral("Choose how to get the installer.")));
        EventLoopWait::runFor(300);
        saveScreenshot(sheet->grab().toImage(), "update-sheet.png");

        // Return presses the prominent button.
        QTest::keyClick(sheet, Qt::Key_Return);
        QVERIFY(sheet->userStartedInAppDownload());
        QVERIFY(
            EventLoopWait::until([&sheet] { return sheet->session()->progress() > 0.3; }, 20000));
        QVERIFY(button(sheet, QStringLiteral("Cancel Download"))->isVisible());
        saveScreenshot(sheet->grab().toImage(), "update-sheet-downloading.png");
        QVERIFY(EventLoopWait::until(
            [&sheet] { return sheet->session()->phase().kind() == DownloadPhase::Kind::finished; },
            30000));
        EventLoopWait::runFor(100);
        QVERIFY(!button(sheet, QStringLiteral("Cancel Download"))->isVisible());
        QVERIFY(button(sheet, QStringLiteral("Show in Finder"))->isVisible());
        saveScreenshot(sheet->grab().toImage(), "update-sheet-finished.png");

        button(sheet, QStringLiteral("Close"))->click();
        QVERIFY(waitUntilDeleted(sheet));
        QVERIFY(!view->coordinator().updateDownloadPresentation());
    }

    void escapeDismissesTheSheetAndEndsItsDownload()
    {
        LocalWebServer::Response feed;
        feed.body = "9.0.0";
        m_server.route(QStringLiteral("/updates/telvane.txt"), feed);
        LocalWebServer::Response installer;
        installer.body = QByteArray(4 * 1024 * 1024, 'i');
        installer.contentType = "application/octet-stream";
        installer.bytesPerTick = 8 * 1024;
        m_server.route(QStringLiteral("/Telvane.dmg"), installer);
        QWidget window;
        auto *view = new AboutView(&m_alerts, &window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        view->checkForUpdatesButton()->click();
        QVERIFY(EventLoopWait::until([view] { return view->sheet() != nullptr; }, 10000));
        QPointer<UpdateDownloadSheet> sheet = view->sheet();
        QVERIFY(labelTexts(sheet).filter(QStringLiteral("Release Notes")).isEmpty());
        sheet->startInAppDownload();
        QVERIFY(
            EventLoopWait::until([&sheet] { return sheet->session()->progress() > 0.05; }, 20000));

        QTest::keyClick(sheet, Qt::Key_Escape);
        QVERIFY(waitUntilDeleted(sheet));
        QVERIFY(!view->coordinator().updateDownloadPresentation());
        QVERIFY(m_alerts.shown.isEmpty());
        const QDir downloads(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
        QVERIFY(EventLoopWait::until(
            [&downloads] {
                return downloads.entryList(QDir::Files | QDir::Hidden, QDir::Name) ==
                       QStringList{QStringLiteral("Telvane.dmg")}; // the earlier test's
            },
            5000));
    }

private:
    // A closed sheet is deleted later, which a nested event loop does not do by itself.
    static bool waitUntilDeleted(const QPointer<UpdateDownloadSheet> &sheet)
    {
        return EventLoopWait::until(
            [&sheet] {
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                return sheet.isNull();
            },
            5000);
    }

    static QStringList labelTexts(const QWidget *root)
    {
        QStringList texts;
        for (const QLabel *label : root->findChildren<QLabel *>())
            texts.append(label->text());
        return texts;
    }

    static QPushButton *button(const QWidget *root, const QString &text)
    {
        for (QPushButton *candidate : root->findChildren<QPushButton *>()) {
            if (candidate->text() == text)
                return candidate;
        }
        qFatal("no button \"%s\"", qPrintable(text));
    }

    // scripts/screenshots/about.sh keeps them in docs/screenshots.
    static void saveScreenshot(const QImage &image, const char *name)
    {
        const QString folder = qEnvironmentVariable("TELVANE_SCREENSHOT_DIR");
        if (!folder.isEmpty())
            QVERIFY(image.save(QDir(folder).filePath(QLatin1String(name)), "PNG", 0));
    }

    LocalWebServer m_server;
    ScriptedAlertPresenter m_alerts;
    OpenedUrls m_opened;
};

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    AboutWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "AboutWindowTest.moc"
