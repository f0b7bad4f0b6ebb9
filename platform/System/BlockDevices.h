// SPDX-License-Identifier: MIT
// The block devices of mounted volumes, and which are removable. Private to the platform.
// [host thread]

#pragma once

#include "MountTable.h"
#include "Udev.h"

#include <optional>

#include <sys/types.h>

namespace gps {

/// The block device of a mounted volume; nullopt if it has none. A volume that spans several
/// devices has a device number of its own, with major number 0, and names one of the devices as its
/// source.
[[nodiscard]] std::optional<dev_t> deviceOf(const MountTableEntry& entry);

/// Whether a disk, or the disk of a partition, is removable: its `removable` attribute is 1, it is
/// connected by USB, or it is a memory card. A hard disk in a USB case reports that it is not
/// removable, although it is.
/// @return  nullopt for a partition without a disk
[[nodiscard]] std::optional<bool> isRemovable(udev_device* blockDevice);

} // namespace gps
