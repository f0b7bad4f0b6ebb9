// SPDX-License-Identifier: MIT

#include "../Testbed.h"

#include <platform/System/RemovableDisks.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace gps {
namespace {

constexpr char kUsbPort[] = "/devices/pci0/usb1/1-1";
constexpr char kInsidePort[] = "/devices/pci0/ata1";

class RemovableDisksTest : public testing::Test {
protected:
    RemovableDisksTest()
    {
        testbed_.add("P: /devices/pci0/usb1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
                     "P: /devices/pci0/usb1/1-1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n");
    }

    /// Adds a disk with a number and properties, such as "E: ID_FS_TYPE=vfat\n".
    void add(const std::string& parent, const std::string& name, int minor,
             const std::string& properties) const
    {
        const auto number = std::to_string(minor);
        testbed_.add("P: " + parent + "/block/" + name + "\nN: " + name +
                     "\nE: SUBSYSTEM=block\nE: DEVTYPE=disk\nE: DEVNAME=/dev/" + name +
                     "\nE: MAJOR=8\nE: MINOR=" + number + "\n" + properties + "A: dev=8:" + number +
                     "\\n\nA: removable=0\\n\n\n");
    }

    /// The disks, one per line.
    [[nodiscard]] std::string disks(const std::string& mountTable = {}) const
    {
        std::string text;
        for (const auto& disk : removableDisks(testbed_.mountTable(mountTable))) {
            text += disk.node + " " + disk.fileSystem + " " + disk.label;
            for (const auto& folder : disk.folders)
                text += " " + folder;
            text += "\n";
        }
        return text;
    }

    support::Testbed testbed_;
};

TEST_F(RemovableDisksTest, AreListedByNodeWithFileSystemAndLabel)
{
    add(kUsbPort, "sdc", 32, "E: ID_FS_TYPE=exfat\n");
    add(kUsbPort, "sdb", 16, "E: ID_FS_TYPE=vfat\nE: ID_FS_LABEL=RECEIVER\n");
    EXPECT_EQ(disks(), "/dev/sdb vfat RECEIVER\n/dev/sdc exfat \n");
}

TEST_F(RemovableDisksTest, BuiltInOnesAreNotListedAndThoseThatCannotBeMountedNeither)
{
    add(kInsidePort, "sda", 0, "E: ID_FS_TYPE=vfat\n");
    add(kUsbPort, "sdc", 32, "E: ID_FS_TYPE=vfat\nE: UDISKS_IGNORE=1\n");
    add(kUsbPort, "sdd", 48, "");
    EXPECT_EQ(disks(testbed_.mountLine("8:0", "/media/a")), "");
    EXPECT_EQ(disks(testbed_.mountLine("8:32", "/c") + testbed_.mountLine("8:48", "/d")),
              "/dev/sdc vfat  /c\n/dev/sdd   /d\n")
        << "they are mounted nevertheless";
}

TEST_F(RemovableDisksTest, FoldersAreThoseWhereTheDiskIsVisible)
{
    add(kUsbPort, "sdb", 16, "E: ID_FS_TYPE=vfat\n");
    add(kUsbPort, "sdc", 32, "E: ID_FS_TYPE=vfat\n");
    const auto table = support::Testbed::mountLine("8:16", "/media/a") +
                       support::Testbed::mountLine("8:32", "/media/b") +
                       support::Testbed::mountLine("8:32", "/media/c");
    EXPECT_EQ(disks(table), "/dev/sdb vfat  /media/a\n/dev/sdc vfat  /media/b /media/c\n");
    EXPECT_EQ(disks(table + support::Testbed::mountLine("8:16", "/media/b")),
              "/dev/sdb vfat  /media/a /media/b\n/dev/sdc vfat  /media/c\n");
    EXPECT_EQ(disks(table + support::Testbed::mountLine("0:45", "/media/b")),
              "/dev/sdb vfat  /media/a\n/dev/sdc vfat  /media/c\n")
        << "hidden by a volume without a disk";
}

} // namespace
} // namespace gps
