// SPDX-License-Identifier: MIT
// Explains to a user whose receiver was not found how the drivers judged each volume and each
// serial port. Used by `devices --explain` and by the window. [host thread]

#pragma once

#include "host/bundle/Disk.h"
#include "host/bundle/PlugInBundle.h"

#include <platform/System/RemovableDisks.h>

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace host {

/// For a terminal: one paragraph per driver. Devices come first, then the locations that a driver
/// examined and rejected, then those that it skipped. In the end, the disks that are not mounted.
[[nodiscard]] std::string
explanationOf(const PlugInBundle& plugIn,
              const std::vector<gps::RemovableDisk>& unmounted = unmountedDisks());

/// A disk's file system and label, such as: vfat "MAGELLAN".
[[nodiscard]] std::string describeFileSystem(const gps::RemovableDisk& disk);

/// For scripts: a driver's locations in the order of its search; null if it does not report them.
[[nodiscard]] nlohmann::ordered_json searchedLocationsJson(const gps::GPSPlugInProtocol& driver);

/// For scripts: the disks that may be receivers but are not mounted.
[[nodiscard]] nlohmann::ordered_json unmountedDisksJson();

} // namespace host
