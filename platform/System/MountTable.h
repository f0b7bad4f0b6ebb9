// SPDX-License-Identifier: MIT
// MountTable: parses the kernel's list of mounted volumes. [any]
// Source of the form: proc(5), /proc/[pid]/mountinfo.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gps {

/// One line of the mount table.
struct MountTableEntry {
    unsigned int major = 0; ///< of the device; 0 if the volume has no device of its own
    unsigned int minor = 0;
    std::string path;   ///< the mount point
    std::string source; ///< the device node, or a word
};

/// Reads lines of the form "id parent MAJOR:MINOR root MOUNT options [tags...] - TYPE source
/// superoptions", in order, and decodes their octal escapes. Lines of any other form are skipped.
/// [any]
[[nodiscard]] std::vector<MountTableEntry> parseMountTable(std::string_view text);

/// Reads and parses a mount table, by default that of this process. [any]
/// @return  no entries if it cannot be read
[[nodiscard]] std::vector<MountTableEntry>
readMountTable(const std::string& path = "/proc/self/mountinfo");

} // namespace gps
