// SPDX-License-Identifier: MIT
// Combines the mount table with the device database, which knows what a disk is connected to.

#include "MountedVolumes.h"

#include "BlockDevices.h"

#include <utility>

namespace gps {
namespace {

std::optional<bool> removability(udev* database, const MountTableEntry& entry)
{
    const auto number = deviceOf(entry);
    if (!number)
        return std::nullopt;
    const UdevDevice device{udev_device_new_from_devnum(database, 'b', *number)};
    return device ? isRemovable(device.get()) : std::nullopt;
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
