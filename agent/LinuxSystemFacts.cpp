#include "LinuxSystemFacts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <algorithm>
#include <cmath>

namespace {

QList<QByteArray> lines(const QByteArray &text)
{
    return text.split('\n');
}

std::optional<quint64> toUnsigned(const QByteArray &field)
{
    bool ok = false;
    const quint64 value = field.toULongLong(&ok);
    return ok ? std::optional<quint64>(value) : std::nullopt;
}

// Mount paths in mountinfo escape space, tab, newline and backslash as \ooo.
QString unescapeMountField(const QByteArray &field)
{
    QByteArray out;
    out.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size()) {
            const QByteArray octal = field.mid(i + 1, 3);
            bool ok = false;
            const int code = octal.toInt(&ok, 8);
            if (ok && octal.size() == 3 && code < 256) {
                out.append(char(code));
                i += 3;
                continue;
            }
        }
        out.append(field[i]);
    }
    return QString::fromUtf8(out);
}

QString unquoteOsReleaseValue(QByteArray value)
{
    value = value.trimmed();
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        value = value.mid(1, value.size() - 2);
        QByteArray out;
        for (qsizetype i = 0; i < value.size(); ++i) {
            if (value[i] == '\\' && i + 1 < value.size())
                ++i;
            out.append(value[i]);
        }
        value = out;
    }
    return QString::fromUtf8(value).trimmed();
}

// Only file systems that store files on a block device count as volumes.
bool isBlockFileSystem(const QString &fsType)
{
    static const QSet<QString> types = {
        QStringLiteral("ext2"),     QStringLiteral("ext3"),    QStringLiteral("ext4"),
        QStringLiteral("xfs"),      QStringLiteral("btrfs"),   QStringLiteral("vfat"),
        QStringLiteral("exfat"),    QStringLiteral("ntfs"),    QStringLiteral("ntfs3"),
        QStringLiteral("fuseblk"),  QStringLiteral("f2fs"),    QStringLiteral("jfs"),
        QStringLiteral("reiserfs"), QStringLiteral("hfsplus"), QStringLiteral("udf"),
        QStringLiteral("nilfs2"),   QStringLiteral("bcachefs")};
    return types.contains(fsType);
}

} // namespace

std::optional<LinuxSystemFacts::CpuTimes>
LinuxSystemFacts::parseCpuTimes(const QByteArray &procStat)
{
    for (const QByteArray &line : lines(procStat)) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 5 || fields[0] != "cpu")
            continue;
        // user nice system idle iowait irq softirq steal; guest time is already in user.
        CpuTimes times;
        quint64 idle = 0;
        for (qsizetype i = 1; i < std::min<qsizetype>(fields.size(), 9); ++i) {
            const auto value = toUnsigned(fields[i]);
            if (!value)
                return std::nullopt;
            times.total += *value;
            if (i == 4 || i == 5)
                idle += *value;
        }
        times.busy = times.total - idle;
        return times;
    }
    return std::nullopt;
}

std::optional<double> LinuxSystemFacts::cpuFraction(const CpuTimes &before, const CpuTimes &after)
{
    if (after.total <= before.total || after.busy < before.busy)
        return std::nullopt;
    const double fraction = double(after.busy - before.busy) / double(after.total - before.total);
    return std::clamp(fraction, 0.0, 1.0);
}

std::optional<qint64> LinuxSystemFacts::parseBootTime(const QByteArray &procStat)
{
    for (const QByteArray &line : lines(procStat)) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() == 2 && fields[0] == "btime") {
            if (const auto value = toUnsigned(fields[1]); value && *value > 0)
                return qint64(*value);
        }
    }
    return std::nullopt;
}

std::optional<LinuxSystemFacts::Memory>
LinuxSystemFacts::parseMemInfo(const QByteArray &procMeminfo)
{
    std::optional<quint64> total, available, free;
    for (const QByteArray &line : lines(procMeminfo)) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 2)
            continue;
        const auto kib = toUnsigned(fields[1]);
        if (!kib)
            continue;
        if (fields[0] == "MemTotal:")
            total = *kib * 1024;
        else if (fields[0] == "MemAvailable:")
            available = *kib * 1024;
        else if (fields[0] == "MemFree:")
            free = *kib * 1024;
    }
    if (!total || (!available && !free))
        return std::nullopt;
    // MemAvailable counts reclaimable cache too; older kernels only have MemFree.
    return Memory{*total, std::min(*total, available ? *available : *free)};
}

std::optional<quint64> LinuxSystemFacts::parseUptime(const QByteArray &procUptime)
{
    const QList<QByteArray> fields = procUptime.simplified().split(' ');
    bool ok = false;
    const double seconds = fields.value(0).toDouble(&ok);
    // A bounded finite value: converting anything larger to an integer is undefined.
    if (!ok || !std::isfinite(seconds) || seconds < 0 || seconds > 1e12)
        return std::nullopt;
    return quint64(seconds);
}

QString LinuxSystemFacts::parseOsRelease(const QByteArray &osRelease)
{
    QString pretty, name, version;
    for (const QByteArray &line : lines(osRelease)) {
        const qsizetype eq = line.indexOf('=');
        if (eq <= 0 || line.trimmed().startsWith('#'))
            continue;
        const QByteArray key = line.left(eq).trimmed();
        const QString value = unquoteOsReleaseValue(line.mid(eq + 1));
        if (key == "PRETTY_NAME")
            pretty = value;
        else if (key == "NAME")
            name = value;
        else if (key == "VERSION")
            version = value;
    }
    if (!pretty.isEmpty())
        return pretty;
    return QStringList{name, version}.join(QLatin1Char(' ')).trimmed();
}

QList<LinuxSystemFacts::Mount> LinuxSystemFacts::parseBlockMounts(const QByteArray &mountInfo)
{
    QList<Mount> mounts;
    QSet<QString> seenDevices;
    for (const QByteArray &line : lines(mountInfo)) {
        // id parent major:minor root mount-point options [optional...] - fstype source super
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (dash < 6 || dash + 2 >= fields.size())
            continue;
        Mount mount;
        mount.majorMinor = QString::fromLatin1(fields[2]);
        mount.mountPoint = unescapeMountField(fields[4]);
        mount.fsType = QString::fromLatin1(fields[dash + 1]);
        mount.device = unescapeMountField(fields[dash + 2]);
        if (!isBlockFileSystem(mount.fsType) || !mount.device.startsWith(QLatin1String("/dev/")))
            continue;
        if (seenDevices.contains(mount.majorMinor))
            continue;
        seenDevices.insert(mount.majorMinor);
        mounts.append(mount);
    }
    return mounts;
}

QString LinuxSystemFacts::parseDefaultRouteInterface(const QByteArray &procNetRoute)
{
    QString best;
    quint64 bestMetric = ~quint64(0);
    for (const QByteArray &line : lines(procNetRoute).mid(1)) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 8 || fields[1] != "00000000" || fields[7] != "00000000")
            continue;
        bool ok = false;
        const quint64 flags = fields[3].toULongLong(&ok, 16);
        if (!ok || !(flags & 0x1)) // RTF_UP
            continue;
        const quint64 metric = fields[6].toULongLong(&ok);
        if (ok && metric < bestMetric) {
            bestMetric = metric;
            best = QString::fromLatin1(fields[0]);
        }
    }
    return best;
}

std::optional<LinuxSystemFacts::Session>
LinuxSystemFacts::parseLogindSession(const QByteArray &sessionFile)
{
    Session session;
    for (const QByteArray &line : lines(sessionFile)) {
        const qsizetype eq = line.indexOf('=');
        if (eq <= 0)
            continue;
        const QByteArray key = line.left(eq);
        const QString value = QString::fromUtf8(line.mid(eq + 1)).trimmed();
        if (key == "USER" && session.user.isEmpty())
            session.user = value; // numeric uid in older files; NAME wins below
        else if (key == "NAME")
            session.user = value;
        else if (key == "SEAT")
            session.seat = value;
        else if (key == "TYPE")
            session.type = value;
        else if (key == "CLASS")
            session.klass = value;
        else if (key == "ACTIVE")
            session.active = value == QLatin1String("1");
        else if (key == "REMOTE")
            session.remote = value == QLatin1String("1");
    }
    if (session.user.isEmpty())
        return std::nullopt;
    return session;
}

std::optional<QString> LinuxSystemFacts::cleanDmiValue(const QByteArray &raw)
{
    const QString value = QString::fromUtf8(raw).trimmed();
    static const QStringList placeholders = {QStringLiteral("To Be Filled By O.E.M."),
                                             QStringLiteral("To be filled by O.E.M."),
                                             QStringLiteral("Default string"),
                                             QStringLiteral("System Product Name"),
                                             QStringLiteral("System Serial Number"),
                                             QStringLiteral("Not Specified"),
                                             QStringLiteral("Not Applicable"),
                                             QStringLiteral("None"),
                                             QStringLiteral("0123456789"),
                                             QStringLiteral("OEM")};
    if (value.isEmpty() || placeholders.contains(value, Qt::CaseInsensitive))
        return std::nullopt;
    // All-zero or all-F identifiers are unset firmware fields.
    QString digits = value;
    digits.remove(QLatin1Char('-'));
    if (!digits.isEmpty() && (digits.count(QLatin1Char('0')) == digits.size() ||
                              digits.count(QLatin1Char('F'), Qt::CaseInsensitive) == digits.size()))
        return std::nullopt;
    return value;
}

std::optional<bool> LinuxSystemFacts::isEncryptedDevice(const QString &sysRoot,
                                                        const QString &majorMinor)
{
    const QString deviceDir = sysRoot + QStringLiteral("/dev/block/") + majorMinor;
    if (!QFileInfo::exists(deviceDir))
        return std::nullopt;
    // Walk down through device-mapper layers (LVM on LUKS, say) looking for a crypt target.
    QStringList pending{QFileInfo(deviceDir).canonicalFilePath()};
    QSet<QString> seen;
    while (!pending.isEmpty()) {
        const QString dir = pending.takeFirst();
        if (dir.isEmpty() || seen.contains(dir) || seen.size() > 64)
            continue;
        seen.insert(dir);
        QFile uuid(dir + QStringLiteral("/dm/uuid"));
        if (uuid.open(QIODevice::ReadOnly) && uuid.readAll().startsWith("CRYPT-"))
            return true;
        const QDir slaves(dir + QStringLiteral("/slaves"));
        for (const QFileInfo &slave : slaves.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
            pending.append(slave.canonicalFilePath());
    }
    return false;
}
