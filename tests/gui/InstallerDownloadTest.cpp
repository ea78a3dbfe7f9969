#include "EventLoopWait.h"
#include "LocalWebServer.h"

#include "services/windows/DiskImageDownloadHostView.h"
#include "services/windows/DiskImageDownloadSession.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <memory>

// The installer download through the web engine, against a scripted server on 127.0.0.1:
// names, progress, cut-offs, time-outs, cancellation and what is left in Downloads.
class InstallerDownloadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        m_payload.resize(5 * 1024 * 1024);
        for (qsizetype i = 0; i < m_payload.size(); ++i)
            m_payload[i] = char((i * 131) >> 7);
    }

    void init()
    {
        m_downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
        QVERIFY(!m_downloads.isEmpty());
        QDir(m_downloads).removeRecursively();
        QVERIFY(QDir().mkpath(m_downloads));
        m_session = std::make_unique<DiskImageDownloadSession>();
        m_host = std::make_unique<DiskImageDownloadHostView>(m_session.get());
        QVERIFY2(m_host->webView(), "the web engine cannot run here");
    }

    void cleanup()
    {
        m_host.reset();
        m_session.reset();
    }

    void progressRisesToOneOnAThrottledFile()
    {
        LocalWebServer::Response response = file(m_payload);
        // About 3 s: the engine reports progress about twice a second.
        response.bytesPerTick = 16 * 1024;
        m_server.route(QStringLiteral("/Telvane.dmg"), response);
        QList<double> seen;
        connect(m_session.get(), &DiskImageDownloadSession::progressChanged, this,
                [&seen](double progress) { seen.append(progress); });
        QSignalSpy phases(m_session.get(), &DiskImageDownloadSession::phaseChanged);

        m_session->start(m_server.url(QStringLiteral("/Telvane.dmg")));
        QCOMPARE(m_session->phase(), DownloadPhase::preparing());
        QVERIFY(waitForEnd());

        const QString saved = QDir(m_downloads).filePath(QStringLiteral("Telvane.dmg"));
        QCOMPARE(m_session->phase(), DownloadPhase::finished(QUrl::fromLocalFile(saved)));
        QCOMPARE(phases.at(0).at(0).value<DownloadPhase>(), DownloadPhase::preparing());
        QCOMPARE(phases.at(1).at(0).value<DownloadPhase>(), DownloadPhase::downloading());
        QVERIFY(seen.size() >= 3);
        QVERIFY(std::is_sorted(seen.cbegin(), seen.cend()));
        QCOMPARE(seen.last(), 1.0);
        QCOMPARE(contents(saved), m_payload);
        QCOMPARE(entries(), QStringList{QStringLiteral("Telvane.dmg")});
    }

    void namesAreNeverReused_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("saved");
        QTest::newRow("(1)") << "/Telvane.dmg" << QStringList{"Telvane.dmg"} << "Telvane (1).dmg";
        QTest::newRow("(2)") << "/Telvane.dmg" << QStringList{"Telvane.dmg", "Telvane (1).dmg"}
                             << "Telvane (2).dmg";
        QTest::newRow("no extension") << "/README" << QStringList{"README"} << "README (1)";
        QTest::newRow("last dot") << "/a.tar.gz" << QStringList{"a.tar.gz"} << "a.tar (1).gz";
    }
    void namesAreNeverReused()
    {
        QFETCH(QString, path);
        QFETCH(QStringList, present);
        QFETCH(QString, saved);
        for (const QString &name : present)
            QVERIFY(writeFile(name, "old"));
        m_server.route(path, file("new"));
        m_session->start(m_server.url(path));
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase(),
                 DownloadPhase::finished(QUrl::fromLocalFile(QDir(m_downloads).filePath(saved))));
        QCOMPARE(contents(QDir(m_downloads).filePath(saved)), QByteArray("new"));
        for (const QString &name : present)
            QCOMPARE(contents(QDir(m_downloads).filePath(name)), QByteArray("old"));
    }

    void aCutOffFailsAndRetrySavesOneWholeFile()
    {
        LocalWebServer::Response cut = file(m_payload);
        cut.cutAfter = m_payload.size() / 2;
        m_server.route(QStringLiteral("/Telvane.dmg"), cut);
        // The engine tries to resume a cut transfer itself and then waits; the session's
        // deadline ends that wait.
        m_session->setRequestTimeout(3000);
        m_session->start(m_server.url(QStringLiteral("/Telvane.dmg")));
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase().kind(), DownloadPhase::Kind::failed);
        QVERIFY(!m_session->phase().message().isEmpty());
        QVERIFY(waitForNoEntries());

        m_server.route(QStringLiteral("/Telvane.dmg"), file(m_payload));
        m_session->retry();
        QCOMPARE(m_session->phase(), DownloadPhase::preparing());
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase().kind(), DownloadPhase::Kind::finished);
        QCOMPARE(entries(), QStringList{QStringLiteral("Telvane.dmg")});
        QCOMPARE(contents(QDir(m_downloads).filePath(QStringLiteral("Telvane.dmg"))), m_payload);
    }

    void anHttpErrorSavesNothing()
    {
        LocalWebServer::Response missing = file("<html>Not here</html>");
        missing.status = 404;
        m_server.route(QStringLiteral("/Missing.dmg"), missing);
        m_session->start(m_server.url(QStringLiteral("/Missing.dmg")));
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase().kind(), DownloadPhase::Kind::failed);
        QVERIFY(waitForNoEntries());
    }

    void cancelBeforeTheDownloadBegins()
    {
        LocalWebServer::Response slow = file(m_payload);
        m_server.route(QStringLiteral("/Telvane.dmg"), slow);
        m_session->start(m_server.url(QStringLiteral("/Telvane.dmg")));
        m_session->cancel();
        QCOMPARE(m_session->phase(), DownloadPhase::cancelled());
        // The download that arrives after the cancel is cancelled too.
        EventLoopWait::runFor(1500);
        QCOMPARE(m_session->phase(), DownloadPhase::cancelled());
        QVERIFY(waitForNoEntries());
    }

    void cancelWhileDownloading()
    {
        LocalWebServer::Response slow = file(m_payload);
        slow.bytesPerTick = 8 * 1024;
        m_server.route(QStringLiteral("/Telvane.dmg"), slow);
        m_session->start(m_server.url(QStringLiteral("/Telvane.dmg")));
        QVERIFY(EventLoopWait::until([this] { return m_session->progress() > 0.01; }, 20000));
        m_session->cancel();
        QVERIFY(EventLoopWait::until(
            [this] { return m_session->phase() == DownloadPhase::cancelled(); }, 10000));
        QVERIFY(waitForNoEntries());
    }

    void silentServersTimeOut_data()
    {
        QTest::addColumn<bool>("answersAtAll");
        QTest::newRow("never answers") << false;
        QTest::newRow("stalls mid-way") << true;
    }
    void silentServersTimeOut()
    {
        QFETCH(bool, answersAtAll);
        LocalWebServer::Response silent = file(m_payload);
        if (answersAtAll)
            silent.stallAfter = m_payload.size() / 3;
        else
            silent.neverAnswers = true;
        m_server.route(QStringLiteral("/Silent.dmg"), silent);
        m_session->setRequestTimeout(1500);
        m_session->start(m_server.url(QStringLiteral("/Silent.dmg")));
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase(),
                 DownloadPhase::failed(QStringLiteral("The request timed out.")));
        QVERIFY(waitForNoEntries());
    }

    void aMissingDownloadsFolderIsMade()
    {
        QVERIFY(QDir(m_downloads).removeRecursively());
        m_server.route(QStringLiteral("/Telvane.dmg"), file("dmg"));
        m_session->start(m_server.url(QStringLiteral("/Telvane.dmg")));
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase().kind(), DownloadPhase::Kind::finished);
        QCOMPARE(entries(), QStringList{QStringLiteral("Telvane.dmg")});
    }

    void aDownloadsFolderThatCannotBeMadeFailsAndRetryKeepsTheAddress()
    {
        QVERIFY(QDir(m_downloads).removeRecursively());
        QVERIFY(writeFileAt(m_downloads, "not a folder"));
        m_server.route(QStringLiteral("/Telvane.dmg"), file("dmg"));
        const QUrl address = m_server.url(QStringLiteral("/Telvane.dmg"));
        m_session->start(address);
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase(),
                 DownloadPhase::failed(QStringLiteral("Could not access your Downloads folder.")));

        QVERIFY(QFile::remove(m_downloads));
        m_session->retry();
        QCOMPARE(m_session->lastRequestedURL(), std::optional<QUrl>(address));
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase().kind(), DownloadPhase::Kind::finished);
    }

    // Under tests/run-small-disk.sh the Downloads folder is a 1 MiB file system of its own.
    void aFullDiskFailsAndLeavesNothing()
    {
        if (!qEnvironmentVariableIsSet("TELVANE_SMALL_DOWNLOADS"))
            QSKIP("needs Downloads on a small tmpfs in a private mount namespace (as root: "
                  "tests/run-small-disk.sh)");
        m_server.route(QStringLiteral("/Telvane.dmg"), file(m_payload));
        m_session->start(m_server.url(QStringLiteral("/Telvane.dmg")));
        QVERIFY(waitForEnd());
        QCOMPARE(m_session->phase().kind(), DownloadPhase::Kind::failed);
        QVERIFY(!m_session->phase().message().isEmpty());
        QVERIFY(waitForNoEntries());
    }

    void withoutTheWebEngineTheDownloadFailsWithTheReason()
    {
        // The engine's helper program cannot be found: no web view is made at all.
        const QByteArray helper = qgetenv("QTWEBENGINEPROCESS_PATH");
        qputenv("QTWEBENGINEPROCESS_PATH", "/nonexistent/QtWebEngineProcess");
        DiskImageDownloadSession session;
        DiskImageDownloadHostView host(&session);
        if (helper.isEmpty())
            qunsetenv("QTWEBENGINEPROCESS_PATH");
        else
            qputenv("QTWEBENGINEPROCESS_PATH", helper);
        QVERIFY(!host.webView());
        session.start(m_server.url(QStringLiteral("/Telvane.dmg")));
        QCOMPARE(session.phase().kind(), DownloadPhase::Kind::failed);
        QVERIFY2(session.phase().message().startsWith(QLatin1String("The download cannot run here: "
                                                                    "its helper program")),
                 qPrintable(session.phase().message()));
    }

    void startWithoutAWebViewFails()
    {
        DiskImageDownloadSession session;
        session.start(m_server.url(QStringLiteral("/Telvane.dmg")));
        QCOMPARE(session.phase(), DownloadPhase::failed(QStringLiteral(
                                      "Download could not start (internal error).")));
    }

private:
    static LocalWebServer::Response file(const QByteArray &body)
    {
        LocalWebServer::Response response;
        response.body = body;
        response.contentType = "application/octet-stream";
        return response;
    }

    bool waitForEnd()
    {
        return EventLoopWait::until(
            [this] {
                const DownloadPhase::Kind kind = m_session->phase().kind();
                return kind == DownloadPhase::Kind::finished ||
                       kind == DownloadPhase::Kind::failed ||
                       kind == DownloadPhase::Kind::cancelled;
            },
            30000);
    }

    // Everything in Downloads, hidden files (the engine's partial ones) included.
    QStringList entries() const
    {
        return QDir(m_downloads).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    bool waitForNoEntries()
    {
        const bool empty = EventLoopWait::until([this] { return entries().isEmpty(); }, 5000);
        if (!empty)
            qWarning() << "left in Downloads:" << entries();
        return empty;
    }

    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool writeFile(const QString &name, const QByteArray &data) const
    {
        return writeFileAt(QDir(m_downloads).filePath(name), data);
    }

    static bool writeFileAt(const QString &path, const QByteArray &data)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
    }

    LocalWebServer m_server;
    QByteArray m_payload;
    QString m_downloads;
    std::unique_ptr<DiskImageDownloadSession> m_session;
    std::unique_ptr<DiskImageDownloadHostView> m_host;
};

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    InstallerDownloadTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "InstallerDownloadTest.moc"
