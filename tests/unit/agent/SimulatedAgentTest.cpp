#include "SimulatedInputProvider.h"
#include "SimulatedScreenProvider.h"
#include "SimulatedStatsProvider.h"

#include <QStringList>
#include <gtest/gtest.h>

TEST(SimulatedStatsProvider, EveryFieldPresentAndChanging)
{
    SimulatedStatsProvider provider(3, QStringLiteral("9.9"));
    const SystemStatsMessage a = provider.reportAt(1.0);
    const SystemStatsMessage b = provider.reportAt(31.0);
    EXPECT_TRUE(a.uptimeSeconds && a.agentVersion && a.screenCaptureAuthorized &&
                a.accessibilityAuthorized && a.screenLocked && a.primaryIPAddress &&
                a.loggedInUser && a.networkName && a.displayCount && a.mainDisplayResolution &&
                a.serialNumber && a.hardwareUUID && a.fileVaultEnabled && a.sipEnabled &&
                a.gatekeeperEnabled && a.mdmEnrolled && a.lastBootTime && a.lastSleepCause &&
                a.lastWakeCause);
    ASSERT_TRUE(a.diskVolumes);
    EXPECT_EQ(a.diskVolumes->size(), 2);
    EXPECT_LE(a.freeMemory, a.totalMemory);
    EXPECT_LE(a.freeDiskSpace, a.totalDiskSpace);
    EXPECT_GE(a.cpuUsage, 0.0);
    EXPECT_LE(a.cpuUsage, 1.0);
    EXPECT_NE(a.freeMemory, b.freeMemory);
    EXPECT_NE(a.cpuUsage, b.cpuUsage);
    // Agents of a fleet differ from each other.
    EXPECT_NE(SimulatedStatsProvider(4, "9.9").reportAt(1.0).hardwareUUID, a.hardwareUUID);
}

TEST(SimulatedScreenProvider, DrawsInputAndEncodesFullFrames)
{
    QStringList log;
    auto input = std::make_shared<SimulatedInputProvider>([&](const QString &l) { log << l; });
    SimulatedScreenProvider screen(input, QStringLiteral("TEST"));
    ASSERT_FALSE(input->mouseMove(100, 1080 - 500, 1, 1));
    ASSERT_FALSE(input->key(0x24, true, 0x20000));
    ASSERT_FALSE(input->key(0x24, false, 0x20000));
    EXPECT_TRUE(input->mouseButton(std::nan(""), 0, 0, true).has_value());
    ASSERT_EQ(log.size(), 3);
    EXPECT_TRUE(log[1].contains(QStringLiteral("Return (shift)")));
    EXPECT_EQ(input->snapshot().lastKey, QStringLiteral("Return (shift)"));

    // The pointer cross is drawn at X coordinates (origin at the top left).
    QByteArray pixels(SimulatedScreenProvider::width * SimulatedScreenProvider::height * 4, 0);
    screen.render(reinterpret_cast<uchar *>(pixels.data()), 0);
    const auto *p = reinterpret_cast<const quint32 *>(pixels.constData());
    EXPECT_EQ(p[500 * SimulatedScreenProvider::width + 100] & 0xFFFFFF, 0xFF2828u);

    const ZEKTCapturedFrame first = screen.capture(0.5f, true, 1);
    ASSERT_EQ(first.status, ZEKTCapturedFrame::Status::ok);
    EXPECT_EQ(first.width, 1920u);
    EXPECT_EQ(first.height, 1080u);
    EXPECT_TRUE(first.imageData.startsWith("\xFF\xD8"));
}
