// SPDX-License-Identifier: MIT
// The disk decides, so a partition is looked up by its disk.

#include "BlockDevices.h"

#include "FileSystem.h"

#include <sys/sysmacros.h>

namespace gps {
namespace {

bool isMemoryCard(udev_device* disk)
{
    return textOf(udev_device_get_sysname(disk)).substr(0, 6) == "mmcblk" ||
           udev_device_get_parent_with_subsystem_devtype(disk, "mmc", nullptr) != nullptr;
}

} // namespace

std::optional<dev_t> deviceOf(const MountTableEntry& entry)
{
    if (entry.major != 0)
        return makedev(entry.major, entry.minor);
    struct stat status;
    if (FileSystem::system().stat(entry.source.c_str(), &status) == 0 && S_ISBLK(status.st_mode))
        return status.st_rdev;
    return std::nullopt;
}

std::optional<bool> isRemovable(udev_device* blockDevice)
{
    udev_device* disk = blockDevice;
    if (textOf(udev_device_get_devtype(disk)) == "partition")
        disk = udev_device_get_parent_with_subsystem_devtype(disk, "block", "disk");
    if (disk == nullptr)
        return std::nullopt;
    return textOf(udev_device_get_sysattr_value(disk, "removable")) == "1" || isMemoryCard(disk) ||
           udev_device_get_parent_with_subsystem_devtype(disk, "usb", "usb_device") != nullptr;
}

} // namespace gps
