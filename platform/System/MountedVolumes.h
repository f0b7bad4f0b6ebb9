// SPDX-License-Identifier: MIT
// Mounted volumes and whether each can be taken out, from the mount table and the device database.
// [host thread]

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gps {

struct MountedVolume {
    std::string path;              ///< the mount point
    std::optional<bool> removable; ///< none: no disk behind it, or one that cannot be looked up
};

/// One line of the mount table.
struct MountTableEntry {
    unsigned int major = 0; ///< of the device; 0: none of its own
    unsigned int minor = 0;
    std::string path;
    std::string source; ///< the device node, or a word
};

/// Reads lines of the form "id parent MAJOR:MINOR root MOUNT options [tags...] - TYPE source
/// superoptions", in order, with their octal escapes undone. A line of another form is passed over.
/// [any] Source of the form: proc(5), /proc/[pid]/mountinfo.
[[nodiscard]] std::vector<MountTableEntry> parseMountTable(std::string_view text);

/// The volumes in the order of the mount table. A disk is removable when its `removable` attribute
/// is 1, or it hangs on USB or is a memory card.
/// @param mountTable  the file to read; one that cannot be read has no volumes
[[nodiscard]] std::vector<MountedVolume>
mountedVolumes(const std::string& mountTable = "/proc/self/mountinfo");

} // namespace gps
