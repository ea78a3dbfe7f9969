#include "LinuxStatsProvider.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSysInfo>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/statvfs.h>
#include <utmpx.h>

namespace {

QByteArray readSmallFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.read(1 << 20);
}

struct Space {
    quint64 total = 0;
    quint64 free = 0;
};

std::optional<Space> spaceOf(const QString &path)
{
    struct statvfs st {};
    if (statvfs(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    // f_bavail: what a normal user can still write, as a file manager shows it.
    return Space{quint64(st.f_blocks) * st.f_frsize, quint64(st.f_bavail) * st.f_frsize};
}

// /dev/disk/by-label names escape characters as \xNN.
QString decodeUdevLabel(const QString &name)
{
    QByteArray out;
    const QByteArray raw = QFile::encodeName(name);
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] == '\\' && i + 3 < raw.size() && raw[i + 1] == 'x') {
            bool ok = false;
            const int code = raw.mid(i + 2, 2).toInt(&ok, 16);
            if (ok) {
                out.append(char(code));
                i += 3;
                continue;
            }
        }
        out.append(raw[i]);
    }
    return QString::fromUtf8(out);
}

QHash<QString, QString> labelsByDevice()
{
    QHash<QString, QString> labels;
    const QDir dir(QStringLiteral("/dev/disk/by-label"));
    for (const QFileInfo &link : dir.entryInfoList(QDir::Files | QDir::System))
        labels.insert(link.canonicalFilePath(), decodeUdevLabel(link.fileName()));
    return labels;
}

QString volumeName(const LinuxSystemFacts::Mount &mount, const QHash<QString, QString> &labels)
{
    const QString device = QFileInfo(mount.device).canonicalFilePath();
    if (const QString label = labels.value(device.isEmpty() ? mount.device : device);
        !label.isEmpty())
        return label;
    if (mount.mountPoint != QLatin1String("/"))
        return QFileInfo(mount.mountPoint).fileName();
    return QFileInfo(mount.device).fileName();
}

std::optional<QString> ipv4OfInterface(const QString &interfaceName)
{
    ifaddrs *list = nullptr;
    if (getifaddrs(&list) != 0)
        return std::nullopt;
    std::optional<QString> chosen, fallback;
    for (ifaddrs *it = list; it; it = it->ifa_next) {
        if (!it->ifa_addr || it->ifa_addr->sa_family != AF_INET || !(it->ifa_flags & IFF_UP) ||
            (it->ifa_flags & IFF_LOOPBACK))
            continue;
        char text[INET_ADDRSTRLEN] = {};
        const auto *in = reinterpret_cast<const sockaddr_in *>(it->ifa_addr);
        if (!inet_ntop(AF_INET, &in->sin_addr, text, sizeof text))
            continue;
        if (!chosen && QString::fromLocal8Bit(it->ifa_name) == interfaceName)
            chosen = QString::fromLatin1(text);
        if (!fallback)
            fallback = QString::fromLatin1(text);
    }
    freeifaddrs(list);
    return chosen ? chosen : fallback;
}

std::optional<QString> consoleUser()
{
    // logind knows which session owns the local seat.
    const QDir sessions(QStringLiteral("/run/systemd/sessions"));
    for (const QFileInfo &file : sessions.entryInfoList(QDir::Files)) {
        if (file.fileName().endsWith(QLatin1String(".ref")))
            continue;
        const auto session = LinuxSystemFacts::parseLogindSession(readSmallFile(file.filePath()));
        if (session && session->active && !session->remote &&
            session->seat == QLatin1String("seat0") && session->klass == QLatin1String("user"))
            return session->user;
    }
    // utmp fields are fixed-size and not always terminated; a begin/end view never
    // reaches for strlen.
    const auto fixedField = [](const char *field, size_t size) {
        return QString::fromLocal8Bit(QByteArrayView(field, field + strnlen(field, size)));
    };
    // Without logind: a local login recorded in utmp (an X display or a virtual console).
    std::optional<QString> user;
    setutxent();
    while (const utmpx *entry = getutxent()) {
        if (entry->ut_type != USER_PROCESS)
            continue;
        const QString line = fixedField(entry->ut_line, sizeof entry->ut_line);
        if (line.startsWith(QLatin1Char(':')) || line.startsWith(QLatin1String("tty"))) {
            user = fixedField(entry->ut_user, sizeof entry->ut_user);
            break;
        }
    }
    endutxent();
    return user;
}

} // namespace

LinuxStatsProvider::LinuxStatsProvider(QString agentVersion, DisplayFactsSource displayFacts)
    : m_agentVersion(std::move(agentVersion)), m_displayFacts(std::move(displayFacts))
{
    // First sample now, so the first report already covers a real interval.
    m_lastCpu = LinuxSystemFacts::parseCpuTimes(readSmallFile(QStringLiteral("/proc/stat")));
    m_sinceLastCpu.start();
}

double LinuxStatsProvider::cpuUsage()
{
    const auto now = LinuxSystemFacts::parseCpuTimes(readSmallFile(QStringLiteral("/proc/stat")));
    QMutexLocker lock(&m_cpuMutex);
    // Several sessions ask within the same moment: a tiny interval would only be noise.
    if (!now || (m_sinceLastCpu.elapsed() < 250 && m_lastCpuFraction > 0))
        return m_lastCpuFraction;
    if (m_lastCpu) {
        if (const auto fraction = LinuxSystemFacts::cpuFraction(*m_lastCpu, *now))
            m_lastCpuFraction = *fraction;
    }
    m_lastCpu = now;
    m_sinceLastCpu.restart();
    return m_lastCpuFraction;
}

SystemStatsMessage LinuxStatsProvider::collect()
{
    SystemStatsMessage stats;
    const QByteArray procStat = readSmallFile(QStringLiteral("/proc/stat"));

    if (const auto memory =
            LinuxSystemFacts::parseMemInfo(readSmallFile(QStringLiteral("/proc/meminfo")))) {
        stats.totalMemory = memory->totalBytes;
        stats.freeMemory = memory->availableBytes;
    }
    if (const auto root = spaceOf(QStringLiteral("/"))) {
        stats.totalDiskSpace = root->total;
        stats.freeDiskSpace = root->free;
    }

    QString os = LinuxSystemFacts::parseOsRelease(readSmallFile(QStringLiteral("/etc/os-release")));
    if (os.isEmpty())
        os = LinuxSystemFacts::parseOsRelease(readSmallFile(QStringLiteral("/usr/lib/os-release")));
    if (os.isEmpty())
        os = QStringLiteral("Linux");
    stats.osVersion =
        os + QStringLiteral(" (kernel ") + QSysInfo::kernelVersion() + QLatin1Char(')');

    const QString dmi = QStringLiteral("/sys/class/dmi/id/");
    auto model =
        LinuxSystemFacts::cleanDmiValue(readSmallFile(dmi + QStringLiteral("product_name")));
    if (!model)
        model = LinuxSystemFacts::cleanDmiValue(readSmallFile(dmi + QStringLiteral("board_name")));
    stats.macModel = model.value_or(QStringLiteral("Linux computer"));
    // Readable by root only; absent otherwise.
    stats.serialNumber =
        LinuxSystemFacts::cleanDmiValue(readSmallFile(dmi + QStringLiteral("product_serial")));
    stats.hardwareUUID =
        LinuxSystemFacts::cleanDmiValue(readSmallFile(dmi + QStringLiteral("product_uuid")));
    if (stats.hardwareUUID)
        stats.hardwareUUID = stats.hardwareUUID->toUpper();

    stats.cpuUsage = cpuUsage();
    stats.uptimeSeconds =
        LinuxSystemFacts::parseUptime(readSmallFile(QStringLiteral("/proc/uptime")));
    if (const auto boot = LinuxSystemFacts::parseBootTime(procStat))
        stats.lastBootTime = QDateTime::fromSecsSinceEpoch(*boot, Qt::UTC);
    stats.agentVersion = m_agentVersion;

    const DisplayFacts display = m_displayFacts ? m_displayFacts() : DisplayFacts{};
    stats.activeProcess = display.activeProcess;
    stats.screenCaptureAuthorized = display.captureAvailable;
    stats.accessibilityAuthorized = display.inputAvailable;
    stats.displayCount = display.displayCount;
    stats.mainDisplayResolution = display.mainResolution;

    const QString routeInterface = LinuxSystemFacts::parseDefaultRouteInterface(
        readSmallFile(QStringLiteral("/proc/net/route")));
    stats.primaryIPAddress = ipv4OfInterface(routeInterface);
    if (const QString host = QSysInfo::machineHostName(); !host.isEmpty())
        stats.networkName = host;
    stats.loggedInUser = consoleUser();

    const QList<LinuxSystemFacts::Mount> mounts =
        LinuxSystemFacts::parseBlockMounts(readSmallFile(QStringLiteral("/proc/self/mountinfo")));
    QList<ZEKTDiskVolumeInfo> volumes;
    const QHash<QString, QString> labels = labelsByDevice();
    for (const LinuxSystemFacts::Mount &mount : mounts) {
        if (mount.mountPoint == QLatin1String("/"))
            stats.fileVaultEnabled =
                LinuxSystemFacts::isEncryptedDevice(QStringLiteral("/sys"), mount.majorMinor);
        if (const auto space = spaceOf(mount.mountPoint))
            volumes.append(
                {volumeName(mount, labels), mount.mountPoint, space->total, space->free});
    }
    if (!mounts.isEmpty())
        stats.diskVolumes = volumes;
    return stats;
}
