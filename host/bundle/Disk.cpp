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

gps::Error explainDisk(const std::string& disk)
{
    const auto nodes = nodesOf(disk);
    for (const auto& node : nodes) {
        if (const auto folder = mountPointOf(node))
            return hostError("This is a disk, and a device is the folder where it is mounted",
                             fmt::format("Name it with --device '{}'", *folder), disk);
    }
    return hostError("This is a disk that is not mounted",
                     fmt::format("Mount it with \"udisksctl mount -b {}\", and run the command "
                                 "again without --device",
                                 nodes.front()),
                     disk);
}

} // namespace host
