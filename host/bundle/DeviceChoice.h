// SPDX-License-Identifier: MIT
// Which driver and which of its devices an operation works on. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"

#include <gps/View.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// The user default that names folders to be treated like mounted volumes.
inline constexpr char kTestFoldersKey[] = "MagellanTestFileList";

/// What the user asked for.
struct DeviceWish {
    std::optional<std::string> driver;      ///< a driver's name as `driverName` gives it
    std::optional<std::string> device;      ///< a device's location
    std::vector<std::string> testFolders{}; ///< folders to be treated like mounted volumes
};

/// One device as a driver lists it.
struct Device {
    std::string location;
    std::optional<std::string> name;
    std::optional<bool> authorized;
    bool isSelected = false;
};

/// A driver's name as the command line has it: lower case, "-" for each space.
[[nodiscard]] std::string driverName(const gps::GPSPlugInProtocol& driver);

/// The names of drivers, with commas between them.
[[nodiscard]] std::string driverNames(const std::vector<Driver>& drivers);

/// A driver's devices, in its order.
[[nodiscard]] std::vector<Device> devicesOf(const gps::GPSPlugInProtocol& driver);

/// Where the selected device is; empty without one.
[[nodiscard]] std::string selectedPlace(const gps::GPSPlugInProtocol& driver);

/// The pop-up in a driver's view that lists its devices; null without one.
[[nodiscard]] gps::PopUpButton* deviceMenu(const gps::GPSPlugInProtocol& driver);

/// Puts folders in front of the stored ones for this run; drivers see them when they are made or
/// look again.
void useTestFolders(const std::vector<std::string>& folders);

/// Chooses the driver and selects the device in it. A wished device that no driver lists, but that
/// is a folder, becomes one more test folder. A named driver is chosen even where it is not ready,
/// so that its own error is seen.
/// @param chosen  out: untouched after a failure
/// @return        why there is nothing to work on, with what there is instead
[[nodiscard]] std::optional<gps::Error> chooseDevice(const std::vector<Driver>& drivers,
                                                     const DeviceWish& wish, Driver& chosen);

/// Chooses the driver for an import: the first that can import files, of all or of those with that
/// name.
[[nodiscard]] std::optional<gps::Error> chooseImporter(const std::vector<Driver>& drivers,
                                                       const std::optional<std::string>& name,
                                                       Driver& chosen);

} // namespace host
