#include "LinuxSystemFacts.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using F = LinuxSystemFacts;

TEST(LinuxSystemFacts, CpuFractionComesFromDeltasOfTheAggregateLine)
{
    const QByteArray first = "cpu  100 0 50 800 50 0 0 0 0 0\ncpu0 1 2 3 4\nbtime 1700000000\n";
    const QByteArray second = "cpu  160 0 90 900 50 0 0 0 0 0\n";
    const auto a = F::parseCpuTimes(first);
    const auto b = F::parseCpuTimes(second);
    ASSERT_TRUE(a && b);
    EXPECT_EQ(a->total, 1000u);
    EXPECT_EQ(a->busy, 150u); // idle and iowait are not busy
    EXPECT_DOUBLE_EQ(*F::cpuFraction(*a, *b), 100.0 / 200.0);
    EXPECT_FALSE(F::cpuFraction(*a, *a)); // no time passed
    EXPECT_FALSE(F::cpuFraction(*b, *a)); // counters went back
    EXPECT_FALSE(F::parseCpuTimes("cpu0 1 2 3 4\n"));
    EXPECT_FALSE(F::parseCpuTimes("cpu  1 x 3 4 5\n"));
    EXPECT_EQ(F::parseBootTime(first), 1700000000);
    EXPECT_FALSE(F::parseBootTime("btime 0\n"));
}

TEST(LinuxSystemFacts, MemoryUptimeAndOsRelease)
{
    const auto mem = F::parseMemInfo("MemTotal:       16000000 kB\nMemFree:  1000 kB\n"
                                     "MemAvailable:    8000000 kB\n");
    ASSERT_TRUE(mem);
    EXPECT_EQ(mem->totalBytes, 16000000ull * 1024);
    EXPECT_EQ(mem->availableBytes, 8000000ull * 1024);
    EXPECT_EQ(F::parseMemInfo("MemTotal: 100 kB\nMemFree: 40 kB\n")->availableBytes, 40u * 1024);
    EXPECT_FALSE(F::parseMemInfo("MemFree: 40 kB\n"));

    EXPECT_EQ(F::parseUptime("12345.67 999.0\n"), 12345u);
    EXPECT_FALSE(F::parseUptime("garbage"));
    EXPECT_FALSE(F::parseUptime("4.4e124 1"));
    EXPECT_FALSE(F::parseUptime("inf 1"));

    EXPECT_EQ(F::parseOsRelease("NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12 "
                                "(bookworm)\"\n"),
              QStringLiteral("Debian GNU/Linux 12 (bookworm)"));
    EXPECT_EQ(F::parseOsRelease("NAME='Some OS'\nVERSION=\"1 \\\"x\\\"\"\n"),
              QStringLiteral("Some OS 1 \"x\""));
    EXPECT_EQ(F::parseOsRelease("# nothing\n"), QString());
}

TEST(LinuxSystemFacts, OnlyRealBlockFileSystemsOncePerDevice)
{
    const QByteArray mountInfo = "22 27 0:21 / /proc rw - proc proc rw\n"
                                 "27 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
                                 "28 27 8:1 / /boot/efi rw - vfat /dev/sda1 rw\n"
                                 "29 27 0:25 / /tmp rw - tmpfs tmpfs rw\n"
                                 "30 27 8:2 /home /srv/bind rw - ext4 /dev/sda2 rw\n"
                                 "31 27 8:17 / /media/My\\040Disk rw - exfat /dev/sdb1 rw\n"
                                 "32 27 7:0 / /snap/core rw - squashfs /dev/loop0 ro\n"
                                 "33 27 0:40 / /mnt/net rw - nfs4 server:/x rw\n"
                                 "truncated line\n";
    const auto mounts = F::parseBlockMounts(mountInfo);
    ASSERT_EQ(mounts.size(), 3);
    EXPECT_EQ(mounts[0].mountPoint, QStringLiteral("/"));
    EXPECT_EQ(mounts[0].majorMinor, QStringLiteral("8:2"));
    EXPECT_EQ(mounts[1].device, QStringLiteral("/dev/sda1"));
    EXPECT_EQ(mounts[2].mountPoint, QStringLiteral("/media/My Disk"));
}

TEST(LinuxSystemFacts, DefaultRouteSessionAndDmi)
{
    const QByteArray route =
        "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n"
        "wlan0\t00000000\t0101A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n"
        "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
        "eth0\t0001A8C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n";
    EXPECT_EQ(F::parseDefaultRouteInterface(route), QStringLiteral("eth0"));
    EXPECT_EQ(F::parseDefaultRouteInterface("Iface\n"), QString());

    const auto session = F::parseLogindSession("UID=1000\nUSER=1000\nNAME=alice\nACTIVE=1\n"
                                               "SEAT=seat0\nTYPE=x11\nCLASS=user\nREMOTE=0\n");
    ASSERT_TRUE(session);
    EXPECT_EQ(session->user, QStringLiteral("alice"));
    EXPECT_TRUE(session->active);
    EXPECT_EQ(session->seat, QStringLiteral("seat0"));
    EXPECT_FALSE(F::parseLogindSession("ACTIVE=1\n"));

    EXPECT_EQ(F::cleanDmiValue("ThinkPad X1\n"), QStringLiteral("ThinkPad X1"));
    EXPECT_FALSE(F::cleanDmiValue("To Be Filled By O.E.M.\n"));
    EXPECT_FALSE(F::cleanDmiValue("00000000-0000-0000-0000-000000000000"));
    EXPECT_FALSE(F::cleanDmiValue(""));
}

TEST(LinuxSystemFacts, EncryptionFollowsDeviceMapperLayers)
{
    // sys/dev/block/254:1 → dm-1 (LVM) whose slave dm-0 is a crypt mapping.
    QTemporaryDir sys;
    const QString root = sys.path();
    auto write = [](const QString &path, const QByteArray &text) {
        QDir().mkpath(QFileInfo(path).path());
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    };
    write(root + "/devices/dm-0/dm/uuid", "CRYPT-LUKS2-abc-root\n");
    write(root + "/devices/dm-1/dm/uuid", "LVM-xyz\n");
    write(root + "/devices/sda2/size", "1\n");
    QDir().mkpath(root + "/devices/dm-1/slaves");
    QDir().mkpath(root + "/dev/block");
    QFile::link(root + "/devices/dm-0", root + "/devices/dm-1/slaves/dm-0");
    QFile::link(root + "/devices/dm-1", root + "/dev/block/254:1");
    QFile::link(root + "/devices/sda2", root + "/dev/block/8:2");
    EXPECT_EQ(F::isEncryptedDevice(root, "254:1"), true);
    EXPECT_EQ(F::isEncryptedDevice(root, "8:2"), false);
    EXPECT_EQ(F::isEncryptedDevice(root, "9:9"), std::nullopt);
}

#include "LinuxStatsProvider.h"

TEST(LinuxStatsProvider, RequiredFieldsAlwaysAndNoDisplayMeansNotAuthorized)
{
    LinuxStatsProvider provider("1.2.3", nullptr);
    const SystemStatsMessage s = provider.collect();
    EXPECT_GT(s.totalMemory, 0u);
    EXPECT_LE(s.freeMemory, s.totalMemory);
    EXPECT_LE(s.freeDiskSpace, s.totalDiskSpace);
    EXPECT_FALSE(s.osVersion.isEmpty());
    EXPECT_FALSE(s.macModel.isEmpty());
    EXPECT_GE(s.cpuUsage, 0.0);
    EXPECT_LE(s.cpuUsage, 1.0);
    EXPECT_TRUE(s.activeProcess.isEmpty());
    EXPECT_EQ(s.screenCaptureAuthorized, false);
    EXPECT_EQ(s.accessibilityAuthorized, false);
    EXPECT_FALSE(s.displayCount);
    EXPECT_EQ(s.agentVersion, QStringLiteral("1.2.3"));
    // Nothing Linux cannot tell is invented.
    EXPECT_FALSE(s.sipEnabled || s.gatekeeperEnabled || s.mdmEnrolled || s.lastSleepCause ||
                 s.lastWakeCause || s.screenLocked);
}
