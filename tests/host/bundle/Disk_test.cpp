// SPDX-License-Identifier: MIT
// Device nodes of disks. Mounted and real ones are in the list of mistakes, on a mocked machine.

#include "host/bundle/Disk.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(Disk, IsABlockDevice)
{
    const support::TemporaryFolder folder;
    EXPECT_FALSE(host::isDisk("/dev/null"));
    EXPECT_FALSE(host::isDisk("/dev/no-such-disk"));
    EXPECT_FALSE(host::isDisk(folder.path()));
    EXPECT_FALSE(host::isDisk(folder.put("image", "")));
}

TEST(Disk, ThatIsNotMountedGetsTheCommandThatMountsIt)
{
    const auto error = host::explainDisk("/dev/no-such-disk");
    EXPECT_EQ(error.description(), "This is a disk that is not mounted");
    EXPECT_EQ(error.suggestion(), "Mount it with --mount, or with \"udisksctl mount -b "
                                  "/dev/no-such-disk\" and run the command again without --device");
    EXPECT_EQ(error.path(), "/dev/no-such-disk");
}

TEST(Disk, MayBeAReceiverWithAFileSystemThatReceiversHave)
{
    for (const char* const fileSystem : {"vfat", "exfat", "msdos"})
        EXPECT_TRUE(host::mayBeReceiver(gps::RemovableDisk{{}, fileSystem, {}, {}})) << fileSystem;
    for (const char* const fileSystem : {"ext4", "ntfs", "iso9660", ""})
        EXPECT_FALSE(host::mayBeReceiver(gps::RemovableDisk{{}, fileSystem, {}, {}})) << fileSystem;
}

} // namespace
