// SPDX-License-Identifier: MIT
// Mounted volumes and whether each is removable, from the mount table and the device database.
// [host thread]

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace gps {

struct MountedVolume {
    std::string path;              ///< the mount point
    std::optional<bool> removable; ///< nullopt if no disk was found behind the volume
};

/// The volumes in the order of the mount table. A disk is removable if its `removable` attribute is
/// 1, if it is connected by USB, or if it is a memory card. [host thread]
/// @param mountTable  the file to read; if it cannot be read, there are no volumes
[[nodiscard]] std::vector<MountedVolume>
mountedVolumes(const std::string& mountTable = "/proc/self/mountinfo");

} // namespace gps
