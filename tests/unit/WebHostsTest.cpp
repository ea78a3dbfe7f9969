#include "platform/WebHosts.h"
#include "LogLines.h"

#include <QTest>

class WebHostsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void addresses_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("encoded"); // empty: none

        QTest::newRow("root") << "https://www.quorvel.com"
                              << ""
                              << ""
                              << "https://www.quorvel.com/";
        QTest::newRow("query with %20, never +")
            << "https://www.quorvel.com"
            << "/support/ticket_create"
            << "category=Bug%20Report"
            << "https://www.quorvel.com/support/ticket_create?category=Bug%20Report";
        QTest::newRow("test server with port") << "http://127.0.0.1:8080"
                                               << "/aichat"
                                               << ""
                                               << "http://127.0.0.1:8080/aichat";
        QTest::newRow("a trailing slash is no path")
            << "https://download.quorvel.com/"
            << "/TelvaneAgent.dmg"
            << ""
            << "https://download.quorvel.com/TelvaneAgent.dmg";
        QTest::newRow("empty") << ""
                               << "/x"
                               << ""
                               << "";
        QTest::newRow("with a path") << "https://h.example/sub"
                                     << "/x"
                                     << ""
                                     << "";
        QTest::newRow("with a blank") << "https://h.example /"
                                      << "/x"
                                      << ""
                                      << "";
        QTest::newRow("other scheme") << "ftp://h.example"
                                      << "/x"
                                      << ""
                                      << "";
        QTest::newRow("port out of range") << "http://127.0.0.1:70000"
                                           << "/x"
                                           << ""
                                           << "";
        QTest::newRow("port zero") << "http://127.0.0.1:0"
                                   << "/x"
                                   << ""
                                   << "";
        QTest::newRow("port not a number") << "http://127.0.0.1:80a"
                                           << "/x"
                                           << ""
                                           << "";
        QTest::newRow("user info") << "https://me@h.example"
                                   << "/x"
                                   << ""
                                   << "";
        QTest::newRow("no host") << "https://"
                                 << "/x"
                                 << ""
                                 << "";
        QTest::newRow("relative path") << "https://h.example"
                                       << "x"
                                       << ""
                                       << "";
    }

    void addresses()
    {
        QFETCH(QString, base);
        QFETCH(QString, path);
        QFETCH(QString, query);
        QFETCH(QString, encoded);
        QString whyNot;
        const std::optional<QUrl> address = WebHosts::formAddress(base, path, query, &whyNot);
        if (encoded.isEmpty()) {
            QVERIFY(!address);
            QVERIFY(!whyNot.isEmpty());
        } else {
            QVERIFY2(address, qPrintable(whyNot));
            QCOMPARE(QString::fromLatin1(address->toEncoded()), encoded);
        }
    }

    void overridesAndTheirReasonLoggedOnce()
    {
        qputenv("TELVANE_WEB_HOST", "http://127.0.0.1:9");
        QCOMPARE(WebHosts::webAddress("/updates/telvane.txt")->toString(),
                 QStringLiteral("http://127.0.0.1:9/updates/telvane.txt"));
        QCOMPARE(WebHosts::downloadAddress("/TelvaneAgent.dmg")->toString(),
                 QStringLiteral("https://download.quorvel.com/TelvaneAgent.dmg"));

        qputenv("TELVANE_WEB_HOST", "http://127.0.0.1:9/path");
        LogLines::clear();
        QVERIFY(!WebHosts::webAddress("/aichat"));
        QVERIFY(!WebHosts::webAddress("/support"));
        QCOMPARE(LogLines::countStartingWith("Web address base \"http://127.0.0.1:9/path\""), 1);
        qunsetenv("TELVANE_WEB_HOST");
    }
};

QTEST_GUILESS_MAIN(WebHostsTest)
#include "WebHostsTest.moc"
