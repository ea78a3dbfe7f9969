#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

// Parsers for the kernel and system files the statistics come from. Each takes the
// file's text, so tests feed them samples instead of the live machine.
class LinuxSystemFacts {
public:
    struct CpuTimes {
        quint64 busy = 0;
        quint64 total = 0;
    };
    struct Memory {
        quint64 totalBytes = 0;
        quint64 availableBytes = 0;
    };
    struct Mount {
        QString device;     // source, e.g. /dev/sda1
        QString mountPoint; // unescaped
        QString fsType;
        QString majorMinor; // "8:1"
    };
    struct Session {
        QString user;
        QString seat;
        QString type;  // x11, wayland, tty
        QString klass; // user, greeter
        bool active = false;
        bool remote = false;
    };

    // The aggregate "cpu" line of /proc/stat.
    static std::optional<CpuTimes> parseCpuTimes(const QByteArray &procStat);
    // Busy fraction between two samples, 0…1; none when no time passed.
    static std::optional<double> cpuFraction(const CpuTimes &before, const CpuTimes &after);
    // "btime" of /proc/stat: boot time in seconds since the Unix epoch.
    static std::optional<qint64> parseBootTime(const QByteArray &procStat);
    static std::optional<Memory> parseMemInfo(const QByteArray &procMeminfo);
    static std::optional<quint64> parseUptime(const QByteArray &procUptime);
    // PRETTY_NAME, else NAME and VERSION; empty when the file says nothing usable.
    static QString parseOsRelease(const QByteArray &osRelease);
    // Mounts of real block file systems from /proc/self/mountinfo, one per device
    // (bind mounts and btrfs subvolumes of a device already listed are dropped).
    static QList<Mount> parseBlockMounts(const QByteArray &mountInfo);
    // Interface carrying the IPv4 default route in /proc/net/route.
    static QString parseDefaultRouteInterface(const QByteArray &procNetRoute);
    // A logind session state file (/run/systemd/sessions/<id>).
    static std::optional<Session> parseLogindSession(const QByteArray &sessionFile);
    // A DMI text with firmware placeholders ("To Be Filled By O.E.M.") treated as unknown.
    static std::optional<QString> cleanDmiValue(const QByteArray &raw);
    // True when a block device (by "major:minor") is, or sits on, a dm-crypt mapping;
    // none when sysfs cannot tell. `sysRoot` is "/sys" except in tests.
    static std::optional<bool> isEncryptedDevice(const QString &sysRoot, const QString &majorMinor);
};
