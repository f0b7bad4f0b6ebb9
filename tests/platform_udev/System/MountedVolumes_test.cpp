// SPDX-License-Identifier: MIT

#include "../Testbed.h"

#include <platform/System/MountedVolumes.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace gps {
namespace {

constexpr char kUsbStick[] = "/devices/pci0/usb1/1-1/1-1:1.0/host1/target1:0:0/1:0:0:0";
constexpr char kInternal[] = "/devices/pci0/ata1/host0/target0:0:0/0:0:0:0";
constexpr char kCardReader[] = "/devices/pci0/mmc_host/mmc0/mmc0:aaaa";

class MountedVolumesTest : public testing::Test {
protected:
    MountedVolumesTest()
    {
        testbed_.add(
            "P: /devices/pci0/usb1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
            "P: /devices/pci0/usb1/1-1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
            "P: /devices/pci0/usb1/1-1/1-1:1.0\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n\n"
            "P: /devices/pci0/mmc_host/mmc0/mmc0:aaaa\nE: SUBSYSTEM=mmc\n");
    }

    /// Whether a volume on the device with this number is removable.
    [[nodiscard]] std::optional<bool> removability(const std::string& number,
                                                   const std::string& source = "word") const
    {
        const auto volumes = mountedVolumes(
            testbed_.mountTable("95 27 " + number + " / /mnt rw - vfat " + source + " rw\n"));
        EXPECT_EQ(volumes.size(), 1U);
        return volumes.at(0).removable;
    }

    support::Testbed testbed_;
};

TEST_F(MountedVolumesTest, ADiskThatReportsItselfRemovableIsRemovableAndSoIsItsPartition)
{
    testbed_.addDisk(kInternal, "sda", 8, 0, true);
    EXPECT_EQ(removability("8:0"), true);
    EXPECT_EQ(removability("8:1"), true);
}

TEST_F(MountedVolumesTest, AnInternalDiskIsNotRemovableAndNeitherIsItsPartition)
{
    testbed_.addDisk(kInternal, "sda", 8, 0, false);
    EXPECT_EQ(removability("8:0"), false);
    EXPECT_EQ(removability("8:1"), false);
}

TEST_F(MountedVolumesTest, ADiskOnUsbIsRemovableWhateverItReports)
{
    testbed_.addDisk(kUsbStick, "sdb", 8, 16, false);
    EXPECT_EQ(removability("8:16"), true);
    EXPECT_EQ(removability("8:17"), true);
}

TEST_F(MountedVolumesTest, AMemoryCardIsRemovableWhateverItReports)
{
    testbed_.addDisk(kCardReader, "mmcblk0", 179, 0, false);
    EXPECT_EQ(removability("179:0"), true);
    EXPECT_EQ(removability("179:1"), true);
}

TEST_F(MountedVolumesTest, AMemoryCardIsRecognisedByItsNameOrItsReader)
{
    testbed_.addDisk(kInternal, "mmcblk1", 179, 8, false);
    testbed_.addDisk(kCardReader, "sdx", 65, 112, false);
    EXPECT_EQ(removability("179:9"), true);
    EXPECT_EQ(removability("65:113"), true);
}

TEST_F(MountedVolumesTest, RemovabilityIsUnknownWithoutADisk)
{
    EXPECT_EQ(removability("0:21"), std::nullopt);
    EXPECT_EQ(removability("0:21", "/nowhere/at-all"), std::nullopt);
    EXPECT_EQ(removability("0:21", "/dev/null"), std::nullopt);
}

TEST_F(MountedVolumesTest, RemovabilityIsUnknownForAnUnknownDisk)
{
    testbed_.addDisk(kUsbStick, "sdb", 8, 16, true);
    EXPECT_EQ(removability("8:32"), std::nullopt);
}

// btrfs gives its volumes device numbers of their own.
TEST_F(MountedVolumesTest, AVolumeWithItsOwnDeviceNumberIsLookedUpByItsSource)
{
    testbed_.addDisk(kUsbStick, "sdb", 8, 16, false);
    testbed_.addDisk(kInternal, "sda", 8, 0, false);
    EXPECT_EQ(removability("0:45", "/dev/sdb1"), true);
    EXPECT_EQ(removability("0:45", "/dev/sda1"), false);
}

TEST_F(MountedVolumesTest, VolumesAreInTheTablesOrderWithTheirEscapesDecoded)
{
    testbed_.addDisk(kUsbStick, "sdb", 8, 16, true);
    testbed_.addDisk(kInternal, "sda", 8, 0, false);
    const auto volumes = mountedVolumes(
        testbed_.mountTable("95 27 8:17 / /media/z\\040GPS rw shared:1 - vfat /dev/sdb1 rw\n"
                            "garbage\n"
                            "27 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                            "28 27 0:21 / /proc rw - proc proc rw\n"
                            "96 27 8:17 / /media/a rw - vfat /dev/sdb1 rw\n"));
    std::string text;
    for (const auto& [path, removable] : volumes)
        text += path + (removable ? *removable ? " yes\n" : " no\n" : " none\n");
    EXPECT_EQ(text, "/media/z GPS yes\n/ no\n/proc none\n/media/a yes\n");
}

} // namespace
} // namespace gps
