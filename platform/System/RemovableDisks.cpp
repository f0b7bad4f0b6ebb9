// SPDX-License-Identifier: MIT
// The device database knows the disks and what is on them, and the mount table what is mounted.

#include "RemovableDisks.h"

#include "BlockDevices.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace gps {
namespace {

using Folders = std::map<std::string, dev_t>;

/// What is mounted at each folder: the last of several, which hides the others.
Folders mountedDevices(std::vector<MountTableEntry> entries)
{
    Folders folders;
    for (auto& entry : entries) {
        if (const auto device = deviceOf(entry))
            folders[std::move(entry.path)] = *device;
        else
            folders.erase(entry.path);
    }
    return folders;
}

std::string propertyOf(udev_device* device, const char* name)
{
    return std::string{textOf(udev_device_get_property_value(device, name))};
}

RemovableDisk diskOf(udev_device* device, const Folders& mounted)
{
    RemovableDisk disk{.node = udev_device_get_devnode(device),
                       .fileSystem = propertyOf(device, "ID_FS_TYPE"),
                       .label = propertyOf(device, "ID_FS_LABEL"),
                       .folders = {}};
    for (const auto& [folder, number] : mounted) {
        if (number == udev_device_get_devnum(device))
            disk.folders.push_back(folder);
    }
    return disk;
}

} // namespace

std::vector<RemovableDisk> removableDisks(const std::string& mountTable)
{
    std::vector<RemovableDisk> disks;
    const Udev database{udev_new()};
    const UdevEnumerate devices{database ? udev_enumerate_new(database.get()) : nullptr};
    if (!devices)
        return disks;
    const auto mounted = mountedDevices(readMountTable(mountTable));
    udev_enumerate_add_match_subsystem(devices.get(), "block");
    udev_enumerate_scan_devices(devices.get());
    for (auto* entry = udev_enumerate_get_list_entry(devices.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const UdevDevice device{
            udev_device_new_from_syspath(database.get(), udev_list_entry_get_name(entry))};
        if (!device || udev_device_get_devnode(device.get()) == nullptr ||
            !isRemovable(device.get()).value_or(false))
            continue;
        auto disk = diskOf(device.get(), mounted);
        const bool isOffered =
            !disk.fileSystem.empty() && propertyOf(device.get(), "UDISKS_IGNORE") != "1";
        if (isOffered || !disk.folders.empty())
            disks.push_back(std::move(disk));
    }
    std::sort(disks.begin(), disks.end(),
              [](const auto& a, const auto& b) { return a.node < b.node; });
    return disks;
}

} // namespace gps
