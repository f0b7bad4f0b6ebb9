// SPDX-License-Identifier: MIT
// Disks by their device nodes, such as /dev/sdb1: those that a user names instead of the folder
// where they are mounted, and those that a receiver may be but that are not mounted. [host thread]

#pragma once

#include <gps/Error.h>
#include <platform/System/RemovableDisks.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// Whether a location is the device node of a disk or a partition, or a link to one.
[[nodiscard]] bool isDisk(const std::string& location);

/// Why a disk is not a device, and what the user can name or do instead: the folder where it is
/// mounted, or the command that mounts it.
/// Precondition: isDisk(disk).
[[nodiscard]] gps::Error explainDisk(const std::string& disk);

/// The device node to mount for a disk: that of its first partition, or its own.
/// Precondition: isDisk(disk).
[[nodiscard]] std::string nodeToMount(const std::string& disk);

/// Where a disk or one of its partitions is mounted; nullopt if nowhere.
/// Precondition: isDisk(disk).
[[nodiscard]] std::optional<std::string> mountedFolderOf(const std::string& disk);

/// The removable disk that is mounted at a folder; empty if there is none.
[[nodiscard]] std::string removableDiskAt(const std::string& folder);

/// Whether a disk has a file system that receivers have.
[[nodiscard]] bool mayBeReceiver(const gps::RemovableDisk& disk);

/// The removable disks that may be receivers but are not mounted.
[[nodiscard]] std::vector<gps::RemovableDisk> unmountedDisks();

/// The command that mounts a disk.
[[nodiscard]] std::string mountCommand(const std::string& node);

} // namespace host
