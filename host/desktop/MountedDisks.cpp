// SPDX-License-Identifier: MIT
// A disk is tried only once: whoever keeps it busy does not know that it should be unmounted.

#include "host/desktop/MountedDisks.h"

namespace host {

MountedDisks::~MountedDisks()
{
    for (const auto& disk : disks_)
        (void)service_.unmount(disk.node);
}

std::optional<gps::Error> MountedDisks::mount(const std::string& node)
{
    std::string folder;
    if (auto failure = service_.mount(node, folder))
        return failure;
    disks_.push_back({node, folder});
    return std::nullopt;
}

std::optional<gps::Error> MountedDisks::unmount(const std::string& node)
{
    std::erase_if(disks_, [&](const Disk& disk) { return disk.node == node; });
    return service_.unmount(node);
}

} // namespace host
