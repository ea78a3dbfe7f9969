#include "services/windows/FileRevealer.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDesktopServices>
#include <QTest>

// A file manager on the private session bus (the test runs under dbus-run-session).
class FakeFileManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QList<QStringList> shown;
    QStringList startupIds;
    bool fails = false;

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &startupId)
    {
        if (fails) {
            sendErrorReply(QDBusError::Failed, QStringLiteral("cannot show"));
            return;
        }
        shown.append(uris);
        startupIds.append(startupId);
    }
};

class OpenedFolders : public QObject {
    Q_OBJECT

public:
    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl &url) { urls.append(url); }
};

class FileRevealerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!QDBusConnection::sessionBus().isConnected())
            QSKIP("no session bus: run under dbus-run-session");
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &m_folders, "open");
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    void revealsThroughTheFileManager_data()
    {
        QTest::addColumn<bool>("registered");
        QTest::addColumn<bool>("fails");
        QTest::newRow("shown by the service") << true << false;
        QTest::newRow("no service: the folder") << false << false;
        QTest::newRow("service error: the folder") << true << true;
    }
    void revealsThroughTheFileManager()
    {
        QFETCH(bool, registered);
        QFETCH(bool, fails);
        QDBusConnection bus = QDBusConnection::sessionBus();
        FakeFileManager manager;
        manager.fails = fails;
        if (registered) {
            QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager,
                                       QDBusConnection::ExportAllSlots));
            QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.FileManager1")));
        }
        m_folders.urls.clear();
        const QUrl file = QUrl::fromLocalFile(QStringLiteral("/tmp/Down loads/Telvane (1).dmg"));
        FileRevealer::reveal(file);

        if (registered && !fails) {
            QTRY_COMPARE(manager.shown.size(), 1);
            QCOMPARE(manager.shown[0],
                     QStringList{QStringLiteral("file:///tmp/Down%20loads/Telvane%20(1).dmg")});
            QCOMPARE(manager.startupIds[0], QString());
            QTest::qWait(100);
            QVERIFY(m_folders.urls.isEmpty());
        } else {
            QTRY_COMPARE(m_folders.urls.size(), 1);
            QCOMPARE(m_folders.urls[0], QUrl::fromLocalFile(QStringLiteral("/tmp/Down loads")));
            QVERIFY(manager.shown.isEmpty());
        }
        if (registered) {
            bus.unregisterService(QStringLiteral("org.freedesktop.FileManager1"));
            bus.unregisterObject(QStringLiteral("/org/freedesktop/FileManager1"));
        }
    }

private:
    OpenedFolders m_folders;
};

QTEST_MAIN(FileRevealerTest)
#include "FileRevealerTest.moc"
