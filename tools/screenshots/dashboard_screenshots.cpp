// Draws the dashboard and the computer detail in each of their states, in the console's
// own window, and saves them as PNG files: six seeded computers (connected with statistics
// and a screen, connecting, offline with last-known statistics and an error, never
// connected, an empty error, no name). Run it through scripts/screenshots/dashboard.sh,
// which gives it a private HOME and a private X server.
//   dashboard_screenshots <output folder>
#include "app/MainWindow.h"
#include "model/LogManager.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/MainWindowState.h"
#include "ui/ComputerDetailView.h"
#include "ui/QtAlertPresenter.h"
#include "ui/SettingsView.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QImageWriter>
#include <QLinearGradient>
#include <QMessageBox>
#include <QPainter>
#include <QTest>
#include <cstdio>

namespace {

// A small desktop: wallpaper, two windows with lines of text.
QByteArray screenJpeg()
{
    QImage image(640, 400, QImage::Format_RGB32);
    QPainter p(&image);
    QLinearGradient sky(0, 0, 640, 400);
    sky.setColorAt(0, QColor(40, 70, 130));
    sky.setColorAt(1, QColor(150, 90, 120));
    p.fillRect(image.rect(), sky);
    p.fillRect(0, 0, 640, 16, QColor(235, 235, 240));
    for (const QRect &window : {QRect(40, 50, 330, 230), QRect(260, 120, 340, 240)}) {
        p.fillRect(window, Qt::white);
        p.fillRect(window.x(), window.y(), window.width(), 18, QColor(220, 220, 226));
        p.setPen(QColor(60, 60, 60));
        for (int line = 0; line < 10; ++line)
            p.fillRect(window.x() + 12, window.y() + 30 + line * 19,
                       window.width() - 40 - (line * 37) % 90, 6, QColor(170, 175, 185));
    }
    p.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(82);
    writer.write(image);
    return bytes;
}

SystemStats statistics(double cpu, quint64 freeMemory, quint64 freeDisk)
{
    SystemStats s;
    s.totalMemory = 32ull << 30;
    s.freeMemory = freeMemory;
    s.totalDiskSpace = 1000240963584;
    s.freeDiskSpace = freeDisk;
    s.osVersion = QStringLiteral("macOS 14.4.1");
    s.macModel = QStringLiteral("Mac14,13");
    s.cpuUsage = cpu;
    s.activeProcess = QStringLiteral("Xcode");
    s.uptimeSeconds = 3 * 86400 + 5 * 3600 + 120;
    s.agentVersion = QStringLiteral("2.3.0");
    s.screenCaptureAuthorized = true;
    s.accessibilityAuthorized = false;
    s.screenLocked = false;
    s.primaryIPAddress = QStringLiteral("10.0.0.7");
    s.loggedInUser = QStringLiteral("ada");
    s.networkName = QStringLiteral("Studio-5G");
    s.displayCount = 2;
    s.mainDisplayResolution = QStringLiteral("3456 x 2234");
    s.serialNumber = QStringLiteral("C02FK3JYQ6L4");
    s.hardwareUUID = QStringLiteral("8F1D2C3B-4A59-4E6F-8071-92A3B4C5D6E7");
    s.fileVaultEnabled = true;
    s.sipEnabled = true;
    s.gatekeeperEnabled = true;
    s.mdmEnrolled = false;
    s.lastBootTime = QDateTime(QDate(2026, 11, 21), QTime(8, 12));
    s.lastSleepCause = QStringLiteral("Idle sleep");
    s.lastWakeCause = QStringLiteral("User activity");
    s.diskVolumes = QList<DiskVolumeInfo>{
        {QStringLiteral("Macintosh HD"), QStringLiteral("/"), 1000240963584, freeDisk},
        {QStringLiteral("Backup"), QStringLiteral("/Volumes/Backup"), 4000787030016,
         1612345678901}};
    return s;
}

QList<RemoteComputer> seededComputers()
{
    const QDateTime yesterday(QDate(2026, 11, 23), QTime(17, 48));
    QList<RemoteComputer> list;
    RemoteComputer studio;
    studio.name = QStringLiteral("Studio Mac");
    studio.host = QStringLiteral("10.0.0.7");
    studio.description = QStringLiteral("Editing suite, second floor");
    studio.isConnected = true;
    studio.lastConnected = QDateTime(QDate(2026, 11, 24), QTime(9, 41));
    studio.systemStats = statistics(0.37, 9ull << 30, 402345678901);
    studio.thumbnailImage = screenJpeg();
    list << studio;

    RemoteComputer design;
    design.name = QStringLiteral("Design iMac");
    design.host = QStringLiteral("design-imac.local");
    design.isConnecting = true;
    list << design;

    RemoteComputer build;
    build.name = QStringLiteral("Build Server");
    build.host = QStringLiteral("10.0.0.20");
    build.port = 6905;
    build.lastConnected = yesterday;
    build.lastError = QStringLiteral("Connection refused");
    SystemStats buildStats = statistics(0.93, 3ull << 30, 61234567890);
    buildStats.activeProcess = QStringLiteral("clang");
    build.systemStats = buildStats;
    list << build;

    RemoteComputer reception;
    reception.name = QStringLiteral("Reception Mac mini");
    reception.host = QStringLiteral("reception.local");
    list << reception;

    RemoteComputer lab;
    lab.name = QStringLiteral("Lab MacBook");
    lab.host = QStringLiteral("lab-mbp.local");
    lab.lastConnected = yesterday;
    lab.lastError = QString();
    list << lab;

    RemoteComputer unnamed;
    unnamed.host = QStringLiteral("192.168.1.42");
    list << unnamed;
    return list;
}

void setSwitches(bool all)
{
    Preferences &preferences = Preferences::shared();
    using namespace PreferenceKeys;
    preferences.setBoolValue(QLatin1String(dashboardShowSummaryTiles), true);
    preferences.setBoolValue(QLatin1String(dashboardShowHealthMetrics), true);
    preferences.setBoolValue(QLatin1String(dashboardShowTechnicalSpecs), true);
    preferences.setBoolValue(QLatin1String(dashboardShowScreenPreview), all);
}

bool save(QWidget &window, const QString &path)
{
    QTest::qWait(50);
    QImageWriter writer(path, "png");
    if (!writer.write(window.grab().toImage())) {
        std::fprintf(stderr, "cannot write %s: %s\n", qPrintable(path),
                     qPrintable(writer.errorString()));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

// A log as a session leaves it, warnings and failures included.
void fillLog()
{
    LogManager &logManager = LogManager::shared();
    logManager.clearLogs();
    const std::pair<const char *, const char *> lines[] = {
        {"CONNECT", "Connecting to Studio Mac (10.0.0.7:5905)"},
        {"AUTH", "Authenticated with Studio Mac as ada"},
        {"CONNECT", "AppState: Updated computer Studio Mac connection status to connected"},
        {"STATS", "Received system statistics from Studio Mac"},
        {"SCREEN", "Preview requested for Studio Mac"},
        {"WARN", "Unhandled message type 0x2f from Studio Mac"},
        {"CONNECT", "Connecting to Build Server (10.0.0.20:6905)"},
        {"ERROR", "Connection to Build Server failed: Connection refused"},
        {"HEARTBEAT", "Heartbeat from Studio Mac"},
        {"WARN", "Screen image from Studio Mac could not be decoded quickly; used the fallback"},
        {"STATS", "Received system statistics from Studio Mac"},
        {"ERROR", "Upload of Quarterly report.pdf to Lab MacBook failed: the agent refused the "
                  "file [disk full]"},
        {"PERSISTENCE", "Saved 6 computers"},
        {"HEARTBEAT", "Heartbeat from Studio Mac"},
    };
    for (const auto &[category, message] : lines)
        logManager.log(QLatin1String(message), QLatin1String(category));
    QTest::qWait(20);
}

// The window with a message box over it, as the user sees both.
bool saveWithBox(QWidget &window, QWidget &box, const QString &path)
{
    QTest::qWait(50);
    QImage image = window.grab().toImage();
    QPainter painter(&image);
    const QPixmap shown = box.grab();
    const QRect frame(
        QPoint((image.width() - shown.width()) / 2, (image.height() - shown.height()) / 3),
        shown.deviceIndependentSize().toSize());
    // A top-level's own grab leaves out the background the window system gives it.
    painter.fillRect(frame.adjusted(-1, -1, 1, 1), box.palette().color(QPalette::Mid));
    painter.fillRect(frame, box.palette().color(QPalette::Window));
    painter.drawPixmap(frame.topLeft(), shown);
    painter.end();
    if (!QImageWriter(path, "png").write(image))
        return false;
    std::printf("%s\n", qPrintable(path));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: dashboard_screenshots <output folder>\n");
        return 2;
    }
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const QDir out(QString::fromLocal8Bit(argv[1]));
    if (!out.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot create %s\n", argv[1]);
        return 1;
    }

    AppState state;
    const QList<RemoteComputer> computers = seededComputers();
    const QUuid online = computers.at(0).id;
    const QUuid offline = computers.at(2).id;
    QtAlertPresenter alerts;
    MainWindow window(state, nullptr, nullptr, nullptr, &alerts);
    window.show();
    window.appear();
    if (!QTest::qWaitForWindowExposed(&window))
        return 1;

    bool ok = true;
    for (const QSize &size : {QSize(1000, 700), QSize(800, 600)}) {
        const QString suffix = QStringLiteral("-%1x%2.png").arg(size.width()).arg(size.height());
        const auto shoot = [&](const QString &name) {
            ok = save(window, out.filePath(name + suffix)) && ok;
        };
        window.resize(size);
        state.setComputers({});
        setSwitches(false);
        window.state()->select(NavigationItem::dashboard());
        shoot(QStringLiteral("dashboard-empty"));

        state.setComputers(computers);
        shoot(QStringLiteral("dashboard-default"));
        setSwitches(true);
        shoot(QStringLiteral("dashboard-all-options"));
        setSwitches(false);

        for (const auto &[id, name] : {std::pair{online, QStringLiteral("online")},
                                       std::pair{offline, QStringLiteral("offline")}}) {
            window.state()->select(NavigationItem::computer(id));
            window.detail()->setSelectedSegment(DetailSegment::status);
            shoot(QStringLiteral("detail-status-") + name);
            window.detail()->setSelectedSegment(DetailSegment::preview);
            shoot(QStringLiteral("detail-preview-") + name);
        }

        window.state()->select(NavigationItem::computer(online));
        state.beginFileTransfer(QStringLiteral("Quarterly report.pdf"));
        state.updateFileTransferProgress(QStringLiteral("Sending 18.4 MB of 43.9 MB"), 0.42);
        QTest::qWait(20); // the upload state is applied on the main thread
        shoot(QStringLiteral("detail-upload"));
        state.cancelFileTransfer();
        QTest::qWait(20);

        fillLog();
        window.state()->select(NavigationItem::logs());
        shoot(QStringLiteral("logs"));

        window.state()->select(NavigationItem::computer(offline));
        window.state()->requestDelete(offline);
        QTest::qWait(50);
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        ok = box &&
             saveWithBox(window, *box,
                         out.filePath(QStringLiteral("delete-confirmation") + suffix)) &&
             ok;
        if (box)
            box->reject();
        QTest::qWait(20);
    }

    window.showSettings();
    if (SettingsView *settings = window.settingsWindow()) {
        settings->adjustSize();
        ok = save(*settings, out.filePath(QStringLiteral("settings.png"))) && ok;
    }
    state.waitForPendingWrites();
    return ok ? 0 : 1;
}
