// SPDX-License-Identifier: MIT
// Lists the devices of each driver and chooses the driver and the device that a command works on.
// Used by every front end. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"

#include <gps/GPSDeviceDescription.h>
#include <gps/View.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// The user default with the folders that drivers treat like mounted volumes.
inline constexpr char kTestFoldersKey[] = "MagellanTestFileList";

/// Which device the user asked for. Everything is optional.
struct DeviceRequest {
    std::optional<std::string> driver;      ///< a name as returned by driverName()
    std::optional<std::string> device;      ///< a location: a folder or a serial port
    std::vector<std::string> testFolders{}; ///< folders to treat like mounted volumes
    bool needsFiles = false; ///< only devices that mount as a disk, unless one was asked for
};

/// One device in a driver's list.
struct Device {
    std::string location;
    std::optional<std::string> name;
    std::optional<bool> authorized;
    bool isOnUsb = false;         ///< a serial port that is a USB adapter
    bool isKnownReceiver = false; ///< a serial port that a rule of udev ties to a receiver
    bool isSelected = false;
};

/// A driver, and the device that is selected in it.
struct ChosenDevice {
    Driver driver;
    std::string location; ///< empty if the driver has no device
};

/// A driver's name as used on the command line: lower case, "-" for each space.
[[nodiscard]] std::string driverName(const gps::GPSPlugInProtocol& driver);

/// The names of all drivers, separated by commas.
[[nodiscard]] std::string driverNames(const std::vector<Driver>& drivers);

/// A driver's devices, in the driver's order.
[[nodiscard]] std::vector<Device> devicesOf(const gps::GPSPlugInProtocol& driver);

/// What a driver knows of the receiver at a location; nothing if it cannot describe any.
[[nodiscard]] gps::DeviceDescription descriptionOf(const gps::GPSPlugInProtocol& driver,
                                                   const std::string& location);

/// Whether a serial port may be asked although the user has not named it. A receiver may be
/// connected to any port, but finding out that none is takes a minute and a half.
[[nodiscard]] bool isPortToTry(const Device& port);

/// The pop-up in a driver's view that lists its devices; null if the view has none.
[[nodiscard]] gps::PopUpButton* deviceMenu(const gps::GPSPlugInProtocol& driver);

/// Sets the test folders for this run, instead of the stored ones. Drivers read them when they are
/// created and on refreshDeviceList().
void setTestFolders(const std::vector<std::string>& folders);

/// Makes the test folders and the serial port of a request known to the drivers. Call it before
/// the bundle is loaded: drivers read both when they are created, and a driver for serial ports may
/// be offered only because of the port.
void prepareDrivers(const DeviceRequest& request);

/// Chooses a driver and selects the requested device in it.
///
/// Without a request this is the first driver that is ready; one for serial ports only if a rule of
/// udev ties a port to a receiver, a port is a USB adapter, or it is in the user's stored list. A
/// requested folder that no driver lists is added to the test folders once. A driver requested by
/// name is chosen even if it is not ready, so that the operation reports the driver's own error.
/// @param chosen  out: unchanged after a failure
/// @return        why there is nothing to work on, with the alternatives
[[nodiscard]] std::optional<gps::Error> chooseDevice(const std::vector<Driver>& drivers,
                                                     const DeviceRequest& request,
                                                     ChosenDevice& chosen);

/// Whether chooseDevice() finds a device without a request.
[[nodiscard]] bool hasDeviceToChoose(const std::vector<Driver>& drivers);

/// Chooses the driver for an import: the first one that can import files.
/// @param name    restricts the choice to drivers with this name
/// @param chosen  out: unchanged after a failure
[[nodiscard]] std::optional<gps::Error> chooseImporter(const std::vector<Driver>& drivers,
                                                       const std::optional<std::string>& name,
                                                       Driver& chosen);

} // namespace host
