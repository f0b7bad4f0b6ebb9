// SPDX-License-Identifier: MIT
// A disk with partitions has no file system of its own, so its partitions are looked at, too.
// Source: Documentation/ABI/stable/sysfs-block of the kernel.

#include "host/bundle/Disk.h"

#include "host/base/HostError.h"

#include <platform/System/MountTable.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace host {
namespace {

namespace fs = std::filesystem;

// The device nodes of a disk's partitions in order, or its own if it has none.
std::vector<std::string> nodesOf(const std::string& disk)
{
    std::error_code error;
    const auto node = fs::is_symlink(disk, error) ? fs::canonical(disk, error) : fs::path{disk};
    const auto name = node.filename().string();
    std::vector<std::string> nodes;
    for (fs::directory_iterator entry{"/sys/class/block/" + name, error};
         !error && entry != fs::directory_iterator{}; entry.increment(error)) {
        if (fs::exists(entry->path() / "partition", error) ||
            entry->path().filename().string().starts_with(name))
            nodes.push_back(node.parent_path() / entry->path().filename());
    }
    std::sort(nodes.begin(), nodes.end());
    if (nodes.empty())
        nodes.push_back(node);
    return nodes;
}

std::optional<std::string> mountPointOf(const std::string& node)
{
    struct stat status {};
    if (::stat(node.c_str(), &status) != 0)
        return std::nullopt;
    for (const auto& entry : gps::readMountTable()) {
        if (makedev(entry.major, entry.minor) == status.st_rdev)
            return entry.path;
    }
    return std::nullopt;
}

} // namespace

bool isDisk(const std::string& location)
{
    std::error_code ignored;
    return fs::is_block_file(location, ignored);
}

std::string nodeToMount(const std::string& disk)
{
    return nodesOf(disk).front();
}

std::optional<std::string> mountedFolderOf(const std::string& disk)
{
    for (const auto& node : nodesOf(disk)) {
        if (auto folder = mountPointOf(node))
            return folder;
    }
    return std::nullopt;
}

gps::Error explainDisk(const std::string& disk)
{
    if (const auto folder = mountedFolderOf(disk))
        return hostError("This is a disk, and a device is the folder where it is mounted",
                         fmt::format("Name it with --device '{}'", *folder), disk);
    return hostError("This is a disk that is not mounted",
                     fmt::format("Mount it with --mount, or with \"{}\" and run the command again "
                                 "without --device",
                                 mountCommand(nodeToMount(disk))),
                     disk);
}

std::string removableDiskAt(const std::string& folder)
{
    std::error_code failed;
    const auto path = fs::canonical(folder, failed).string();
    for (auto& disk : gps::removableDisks()) {
        if (std::find(disk.folders.begin(), disk.folders.end(), path) != disk.folders.end())
            return std::move(disk.node);
    }
    return {};
}

// Receivers mount as the disks of cameras do.
bool mayBeReceiver(const gps::RemovableDisk& disk)
{
    return disk.fileSystem == "vfat" || disk.fileSystem == "exfat" || disk.fileSystem == "msdos";
}

std::vector<gps::RemovableDisk> unmountedDisks()
{
    auto disks = gps::removableDisks();
    std::erase_if(disks, [](const gps::RemovableDisk& disk) {
        return !disk.folders.empty() || !mayBeReceiver(disk);
    });
    return disks;
}

std::string mountCommand(const std::string& node)
{
    return "udisksctl mount -b " + node;
}

} // namespace host
