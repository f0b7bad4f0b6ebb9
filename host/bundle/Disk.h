// SPDX-License-Identifier: MIT
// Disks that a user names by their device node, such as /dev/sdb1, instead of by the folder where
// they are mounted. [host thread]

#pragma once

#include <gps/Error.h>

#include <string>

namespace host {

/// Whether a location is the device node of a disk or a partition, or a link to one.
[[nodiscard]] bool isDisk(const std::string& location);

/// Why a disk is not a device, and what the user can name or do instead: the folder where it is
/// mounted, or the command that mounts it.
/// Precondition: isDisk(disk).
[[nodiscard]] gps::Error explainDisk(const std::string& disk);

} // namespace host
