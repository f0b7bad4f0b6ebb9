// SPDX-License-Identifier: MIT
// Combines the mount table with the device database, which knows what a disk is connected to.

#include "MountedVolumes.h"

#include "FileSystem.h"
#include "MountTable.h"
#include "Udev.h"

#include <utility>

#include <sys/sysmacros.h>

namespace gps {
namespace {

/// The block device of a mounted volume. A volume that spans several devices has a device number of
/// its own, with major number 0, and names one of the devices as its source.
std::optional<dev_t> deviceOf(const MountTableEntry& entry)
{
    if (entry.major != 0)
        return makedev(entry.major, entry.minor);
    struct stat status;
    if (FileSystem::system().stat(entry.source.c_str(), &status) == 0 && S_ISBLK(status.st_mode))
        return status.st_rdev;
    return std::nullopt;
}

bool isMemoryCard(udev_device* disk)
{
    return textOf(udev_device_get_sysname(disk)).substr(0, 6) == "mmcblk" ||
           udev_device_get_parent_with_subsystem_devtype(disk, "mmc", nullptr) != nullptr;
}

/// A hard disk in a USB case reports that it is not removable, although it is.
bool isRemovable(udev_device* disk)
{
    return textOf(udev_device_get_sysattr_value(disk, "removable")) == "1" || isMemoryCard(disk) ||
           udev_device_get_parent_with_subsystem_devtype(disk, "usb", "usb_device") != nullptr;
}

std::optional<bool> removability(udev* database, const MountTableEntry& entry)
{
    const auto number = deviceOf(entry);
    if (!number)
        return std::nullopt;
    const UdevDevice device{udev_device_new_from_devnum(database, 'b', *number)};
    if (!device)
        return std::nullopt;
    udev_device* disk = device.get();
    if (textOf(udev_device_get_devtype(disk)) == "partition")
        disk = udev_device_get_parent_with_subsystem_devtype(disk, "block", "disk");
    return disk != nullptr ? std::optional{isRemovable(disk)} : std::nullopt;
}

} // namespace

std::vector<MountedVolume> mountedVolumes(const std::string& mountTable)
{
    const Udev database{udev_new()};
    if (!database)
        return {};
    std::vector<MountedVolume> volumes;
    for (auto& entry : readMountTable(mountTable)) {
        const auto removable = removability(database.get(), entry);
        volumes.push_back({std::move(entry.path), removable});
    }
    return volumes;
}

} // namespace gps
