#include "services/UpdateFeed.h"
#include "TestFiles.h"
#include "services/DownloadFileNames.h"
#include "services/DownloadProgressContent.h"

#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(UpdateCheckOutcome)

class UpdateFeedTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TELVANE_DOWNLOAD_HOST", "https://download.example"); }

    void newerVersions_data()
    {
        QTest::addColumn<QString>("offered");
        QTest::addColumn<QString>("running");
        QTest::addColumn<bool>("newer");
        QTest::newRow("1.10 > 1.9") << "1.10"
                                    << "1.9" << true;
        QTest::newRow("2.0 = 2.0.0") << "2.0"
                                     << "2.0.0" << false;
        QTest::newRow("1.4.0 = 1.4") << "1.4.0"
                                     << "1.4" << false;
        QTest::newRow("1.4.1 > 1.4") << "1.4.1"
                                     << "1.4" << true;
        QTest::newRow("1.2.beta = 1.2") << "1.2.beta"
                                        << "1.2" << false;
        QTest::newRow("1.2.beta.1 > 1.2 (beta dropped, not zero)") << "1.2.beta.1"
                                                                   << "1.2" << true;
        QTest::newRow("signed pieces +1.-2 > 1.-3") << "+1.-2"
                                                    << "1.-3" << true;
        QTest::newRow("+1.-2 < 1.0") << "+1.-2"
                                     << "1.0" << false;
        QTest::newRow("blanks make a piece unreadable") << "1. 5"
                                                        << "1.4" << false;
        QTest::newRow("a lone sign is no number") << "1.+.5"
                                                  << "1.4" << true;
        QTest::newRow("piece over 64 bits dropped") << "1.99999999999999999999"
                                                    << "1.0" << false;
        QTest::newRow("int64 max is a number") << "1.9223372036854775807"
                                               << "1.9223372036854775806" << true;
        QTest::newRow("int64 min is a number") << "1.-9223372036854775807"
                                               << "1.-9223372036854775808" << true;
        QTest::newRow("empty running is 1.0.0") << "1.0.1"
                                                << "" << true;
        QTest::newRow("both empty lists") << "a.b"
                                          << "c" << false;
        QTest::newRow("non-ASCII digits dropped") << "1.\u0663"
                                                  << "1.0" << false;
    }
    void newerVersions()
    {
        QFETCH(QString, offered);
        QFETCH(QString, running);
        QFETCH(bool, newer);
        QCOMPARE(isNewerVersion(offered, running), newer);
    }

    void feeds_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("running");
        QTest::addColumn<UpdateCheckOutcome>("expected");

        const auto offer = [](QString version, UpdateType type, std::optional<QString> notes,
                              QString url) {
            return UpdateCheckOutcome::updateAvailable(
                UpdateInfo{std::move(version), type, std::move(notes), std::move(url)});
        };
        const UpdateCheckOutcome invalid =
            UpdateCheckOutcome::checkFailed(QStringLiteral("Invalid update feed format."));
        const UpdateCheckOutcome unreadable = UpdateCheckOutcome::checkFailed(
            QStringLiteral("Could not read the update information."));

        QTest::newRow("pipe form")
            << QByteArray("2.1.0|Major|Bug fixes|https://h.example/T.dmg") << "2.0.9"
            << offer("2.1.0", UpdateType::major, "Bug fixes", "https://h.example/T.dmg");
        QTest::newRow("pipe, parts trimmed, extras ignored")
            << QByteArray("\n 2.1.0 | Patch |  | x | y \r\n") << "2.0"
            << offer("2.1.0", UpdateType::patch, std::nullopt, "x");
        QTest::newRow("pipe, unknown type word") << QByteArray("2.1.0|major|n|u") << "2.0"
                                                 << offer("2.1.0", UpdateType::minor, "n", "u");
        QTest::newRow("pipe, three parts")
            << QByteArray("2.1.0|Major|Bug fixes") << "2.0" << invalid;
        QTest::newRow("pipe wins over colon")
            << QByteArray("2.1.0|Minor|a: b|https://h/x") << "2.0"
            << offer("2.1.0", UpdateType::minor, "a: b", "https://h/x");
        QTest::newRow("colon form") << QByteArray("2.1.0: First line") << "2.0"
                                    << offer("2.1.0", UpdateType::minor, "First line", {});
        QTest::newRow("colon, split at the first only")
            << QByteArray("2.1.0:see: https://x") << "2.0"
            << offer("2.1.0", UpdateType::minor, "see: https://x", {});
        QTest::newRow("colon, empty leading piece dropped")
            << QByteArray(":2.1.0") << "2.0" << offer("2.1.0", UpdateType::minor, {}, {});
        QTest::newRow("colon, no notes")
            << QByteArray("2.1.0:") << "2.0" << offer("2.1.0", UpdateType::minor, {}, {});
        QTest::newRow("colon alone") << QByteArray(":") << "2.0" << invalid;
        QTest::newRow("bare") << QByteArray("2.1.0\n") << "2.0"
                              << offer("2.1.0", UpdateType::minor, {}, {});
        QTest::newRow("up to date")
            << QByteArray("1.4.0") << "1.4" << UpdateCheckOutcome::upToDate();
        QTest::newRow("empty") << QByteArray() << "1.0" << invalid;
        QTest::newRow("blank") << QByteArray(" \r\n\t") << "1.0" << invalid;
        QTest::newRow("no dot") << QByteArray("3") << "1.0" << invalid;
        QTest::newRow("1..2 has a dot")
            << QByteArray("1..2") << "1.0" << offer("1..2", UpdateType::minor, {}, {});
        QTest::newRow("v2.0 compares as .0")
            << QByteArray("v2.0") << "1.0" << UpdateCheckOutcome::upToDate();
        QTest::newRow("html error page with 200")
            << QByteArray("<html><body><h1>Not Found</h1> The page 1.2 is gone</body></html>")
            << "1.0" << invalid;
        QTest::newRow("version over 64 characters")
            << QByteArray("1." + QByteArray(63, '1')) << "1.0" << invalid;
        QTest::newRow("not UTF-8, cut at the end")
            << QByteArray("2.1.0: caf\xe9") << "1.0" << unreadable;
        QTest::newRow("not UTF-8, inside")
            << QByteArray("2.1.0: \xff\xfe notes") << "1.0" << unreadable;
        QTest::newRow("over 64 KiB")
            << QByteArray("2.1.0:" + QByteArray(64 * 1024, 'x')) << "1.0" << unreadable;
    }
    void feeds()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, running);
        QFETCH(UpdateCheckOutcome, expected);
        const UpdateCheckOutcome outcome = parseUpdateFeed(body, running);
        QCOMPARE(outcome.kind, expected.kind);
        QCOMPARE(outcome.message, expected.message);
        QCOMPARE(outcome.info.version, expected.info.version);
        QCOMPARE(outcome.info.type, expected.info.type);
        QCOMPARE(outcome.info.releaseNotes, expected.info.releaseNotes);
        QCOMPARE(outcome.info.downloadURL, expected.info.downloadURL);
    }

    void installerAddresses_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("resolved");
        const QString fallback = QStringLiteral("https://download.example/Telvane.dmg");
        QTest::newRow("https") << " https://cdn.example/T-2.1.dmg "
                               << "https://cdn.example/T-2.1.dmg";
        QTest::newRow("http") << "http://cdn.example/T.dmg"
                              << "http://cdn.example/T.dmg";
        QTest::newRow("no scheme") << "cdn.example/T.dmg" << fallback;
        QTest::newRow("empty") << "" << fallback;
        QTest::newRow("upper-case scheme") << "HTTPS://cdn.example/T.dmg" << fallback;
        QTest::newRow("other scheme") << "ftp://cdn.example/T.dmg" << fallback;
        QTest::newRow("no host") << "https:T.dmg" << fallback;
        QTest::newRow("blank inside") << "https://cdn.example/a b.dmg" << fallback;
    }
    void installerAddresses()
    {
        QFETCH(QString, written);
        QFETCH(QString, resolved);
        UpdateInfo info;
        info.version = QStringLiteral("2.1");
        info.downloadURL = written;
        QCOMPARE(resolveInstallerURL(info).value_or(QUrl()).toString(), resolved);
    }

    void fileNames_data()
    {
        QTest::addColumn<QString>("suggested");
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("free") << "Telvane.dmg" << QStringList{} << "Telvane.dmg";
        QTest::newRow("a partial file takes the name")
            << "Telvane.dmg" << QStringList{"Telvane.dmg.download"} << "Telvane (1).dmg";
        QTest::newRow("leading dot") << ".profile" << QStringList{".profile"} << ".profile (1)";
        QTest::newRow("slashes") << "../../etc/T.dmg" << QStringList{} << "T.dmg";
        QTest::newRow("backslashes") << "..\\x\\T.dmg" << QStringList{} << "T.dmg";
        QTest::newRow("dot-dot alone") << ".." << QStringList{} << "download";
        QTest::newRow("trailing slash") << "dir/" << QStringList{} << "download";
    }
    void fileNames()
    {
        QFETCH(QString, suggested);
        QFETCH(QStringList, present);
        QFETCH(QString, chosen);
        QTemporaryDir folder;
        for (const QString &name : present)
            writeFile(folder.filePath(name), {});
        const QString name = DownloadFileNames::plainName(suggested, QStringLiteral("download"));
        QCOMPARE(DownloadFileNames::firstFreeName(folder.path(), name), chosen);
    }

    void progressTexts_data()
    {
        QTest::addColumn<DownloadPhase>("phase");
        QTest::addColumn<double>("progress");
        QTest::addColumn<int>("bar");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("buttons"); // S(how in Finder) R(etry) C(lose)
        using Bar = DownloadProgressContent::Bar;
        QTest::newRow("idle") << DownloadPhase::idle() << 0.0 << int(Bar::indeterminate)
                              << "Preparing download\u2026"
                              << "";
        QTest::newRow("0.999 is 99") << DownloadPhase::downloading() << 0.999
                                     << int(Bar::determinate) << "Downloading\u2026 99%"
                                     << "";
        QTest::newRow("size unknown") << DownloadPhase::downloading() << 0.0
                                      << int(Bar::determinate) << "Downloading\u2026 0%"
                                      << "";
        QTest::newRow("finished") << DownloadPhase::finished(QUrl("file:///d/T.dmg")) << 1.0
                                  << int(Bar::none) << "Download complete"
                                  << "SC";
        QTest::newRow("failed") << DownloadPhase::failed("x") << 0.3 << int(Bar::none)
                                << "Download failed"
                                << "RC";
        QTest::newRow("cancelled")
            << DownloadPhase::cancelled() << 0.3 << int(Bar::none) << "Download cancelled."
            << "C";
    }
    void progressTexts()
    {
        QFETCH(DownloadPhase, phase);
        QFETCH(double, progress);
        QFETCH(int, bar);
        QFETCH(QString, title);
        QFETCH(QString, buttons);
        const auto content = DownloadProgressContent::forPhase(phase, progress);
        QCOMPARE(int(content.bar), bar);
        QCOMPARE(content.title, title);
        QString shown;
        if (content.showsShowInFinder)
            shown += QLatin1Char('S');
        if (content.showsRetry)
            shown += QLatin1Char('R');
        if (content.showsClose)
            shown += QLatin1Char('C');
        QCOMPARE(shown, buttons);
    }
};

QTEST_GUILESS_MAIN(UpdateFeedTest)
#include "UpdateFeedTest.moc"
