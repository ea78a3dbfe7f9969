#include "LocalWebServer.h"
#include "ScriptedAlertPresenter.h"

#include "services/UpdateCheckCoordinator.h"

#include <QSignalSpy>
#include <QTest>

Q_DECLARE_METATYPE(LocalWebServer::Response)

// checkForUpdates() against a scripted server on 127.0.0.1, with what the user is told read
// back through a scripted alert presenter.
class UpdateCheckTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        qputenv("TELVANE_DOWNLOAD_HOST", "https://download.example");
    }

    void init() { qputenv("TELVANE_WEB_HOST", m_server.base().toLatin1()); }

    void outcomes_data()
    {
        QTest::addColumn<LocalWebServer::Response>("response");
        QTest::addColumn<QString>("title"); // empty: an offer, no alert
        QTest::addColumn<QString>("text");  // for an offer: the installer address

        using Response = LocalWebServer::Response;
        const QString failed = QStringLiteral("Couldn't Check for Updates");
        const auto feed = [](QByteArray body) {
            Response response;
            response.body = std::move(body);
            response.contentType = "text/plain";
            return response;
        };

        QTest::newRow("200, newer") << feed("2.1.0|Major|Bug fixes|https://cdn.example/T.dmg")
                                    << QString() << "https://cdn.example/T.dmg";
        QTest::newRow("200, newer, fallback installer")
            << feed("2.1.0: First line") << QString() << "https://download.example/Telvane.dmg";
        QTest::newRow("200, same") << feed("2.0.9\n") << "No Updates Available"
                                   << "You are running the latest version of Telvane.";
        Response notFound = feed("9.9.9|Major|n|https://cdn.example/T.dmg");
        notFound.status = 404;
        QTest::newRow("404 with a newer body") << notFound << failed
                                               << "The update server returned an error (code "
                                                  "404).";
        Response serverError = feed("oops");
        serverError.status = 500;
        QTest::newRow("500") << serverError << failed
                             << "The update server returned an error (code 500).";
        Response redirect;
        redirect.status = 302;
        redirect.location = "/moved/telvane.txt";
        QTest::newRow("redirect followed")
            << redirect << QString() << "https://download.example/Telvane.dmg";
        QTest::newRow("not UTF-8")
            << feed("2.1.0: caf\xe9") << failed << "Could not read the update information.";
        QTest::newRow("over 64 KiB") << feed("2.1.0:" + QByteArray(70 * 1024, 'x')) << failed
                                     << "Could not read the update information.";
        QTest::newRow("html page with 200") << feed("<html><body>Moved to 3.0 soon</body></html>")
                                            << failed << "Invalid update feed format.";
        QTest::newRow("empty") << feed("") << failed << "Invalid update feed format.";
        Response cut = feed("2.1.0|Major|Bug fixes|https://cdn.example/T.dmg");
        cut.cutAfter = 10;
        QTest::newRow("cut connection") << cut << failed << "*";
        Response silent;
        silent.neverAnswers = true;
        QTest::newRow("never answers") << silent << failed << "The request timed out.";
    }
    void outcomes()
    {
        QFETCH(LocalWebServer::Response, response);
        QFETCH(QString, title);
        QFETCH(QString, text);
        m_server.route(QStringLiteral("/updates/telvane.txt"), response);
        LocalWebServer::Response moved;
        moved.body = "2.2|Minor|n|";
        m_server.route(QStringLiteral("/moved/telvane.txt"), moved);

        ScriptedAlertPresenter alerts;
        alerts.script = {0};
        UpdateCheckCoordinator coordinator(&alerts);
        coordinator.checker().setTransferTimeout(1000);
        QSignalSpy finished(&coordinator, &UpdateCheckCoordinator::checkFinished);
        coordinator.checkForUpdates(QStringLiteral("2.0.9"));
        QVERIFY(finished.wait(10000));

        if (title.isEmpty()) {
            QVERIFY(alerts.shown.isEmpty());
            QVERIFY(coordinator.updateDownloadPresentation());
            QCOMPARE(coordinator.updateDownloadPresentation()->fileURL.toString(), text);
            return;
        }
        QVERIFY(!coordinator.updateDownloadPresentation());
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown[0].title, title);
        QCOMPARE(alerts.shown[0].buttons, QStringList{QStringLiteral("OK")});
        if (text == QLatin1String("*")) {
            // A transport error: Qt's own words, never a parse of the part that came.
            QVERIFY(!alerts.shown[0].text.isEmpty());
            QVERIFY(!alerts.shown[0].text.contains(QLatin1String("update feed")));
        } else {
            QCOMPARE(alerts.shown[0].text, text);
        }
    }

    void addressesThatCannotBeFormed_data()
    {
        QTest::addColumn<QByteArray>("webHost");
        QTest::addColumn<QByteArray>("downloadHost");
        QTest::addColumn<QString>("text");
        QTest::newRow("feed") << QByteArray("ftp://nowhere") << QByteArray("https://d.example")
                              << "Invalid update feed URL.";
        QTest::newRow("installer") << QByteArray() << QByteArray("not an address")
                                   << "The download link for this update is missing or invalid.";
    }
    void addressesThatCannotBeFormed()
    {
        QFETCH(QByteArray, webHost);
        QFETCH(QByteArray, downloadHost);
        QFETCH(QString, text);
        if (!webHost.isEmpty())
            qputenv("TELVANE_WEB_HOST", webHost);
        qputenv("TELVANE_DOWNLOAD_HOST", downloadHost);
        LocalWebServer::Response response;
        response.body = "2.1.0";
        m_server.route(QStringLiteral("/updates/telvane.txt"), response);
        ScriptedAlertPresenter alerts;
        alerts.script = {0};
        UpdateCheckCoordinator coordinator(&alerts);
        QSignalSpy finished(&coordinator, &UpdateCheckCoordinator::checkFinished);
        coordinator.checkForUpdates(QStringLiteral("2.0"));
        QVERIFY(finished.wait(10000));
        qputenv("TELVANE_DOWNLOAD_HOST", "https://download.example");
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown[0].text, text);
    }

    void eachOfferIsANewPresentation()
    {
        LocalWebServer::Response response;
        response.body = "2.1.0";
        m_server.route(QStringLiteral("/updates/telvane.txt"), response);
        ScriptedAlertPresenter alerts;
        UpdateCheckCoordinator coordinator(&alerts);
        QSignalSpy finished(&coordinator, &UpdateCheckCoordinator::checkFinished);
        coordinator.checkForUpdates(QStringLiteral("2.0"));
        QVERIFY(finished.wait(10000));
        const QUuid first = coordinator.updateDownloadPresentation()->id;
        coordinator.checkForUpdates(QStringLiteral("2.0"));
        QVERIFY(finished.wait(10000));
        QVERIFY(coordinator.updateDownloadPresentation()->id != first);
        coordinator.clearPresentation();
        QVERIFY(!coordinator.updateDownloadPresentation());
        QCOMPARE(m_server.requestCount(QStringLiteral("/updates/telvane.txt")) > 0, true);
    }

private:
    LocalWebServer m_server;
};

QTEST_GUILESS_MAIN(UpdateCheckTest)
#include "UpdateCheckTest.moc"
