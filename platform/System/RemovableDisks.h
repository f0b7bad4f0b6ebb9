// SPDX-License-Identifier: MIT
// Removable disks by their device nodes, mounted or not. [host thread]

#pragma once

#include <string>
#include <vector>

namespace gps {

/// A disk with a file system, or a partition.
struct RemovableDisk {
    std::string node;                 ///< such as "/dev/sdb1"
    std::string fileSystem;           ///< as udev names it, such as "vfat"; empty if unknown
    std::string label;                ///< of the file system; empty if it has none
    std::vector<std::string> folders; ///< where it is mounted
};

/// The removable disks and partitions that are mounted or could be, sorted by node. What a rule of
/// udev hides from users (UDISKS_IGNORE) is left out unless it is mounted. [host thread]
/// @param mountTable  the file with the mounted volumes; if it cannot be read, nothing is mounted
[[nodiscard]] std::vector<RemovableDisk>
removableDisks(const std::string& mountTable = "/proc/self/mountinfo");

} // namespace gps
