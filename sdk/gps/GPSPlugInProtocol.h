// SPDX-License-Identifier: MIT
// The driver interface: what a host calls on each driver that a plug-in offers. [host thread]

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace gps {

class GPSOutputReceiver;
class View;

/// A driver. A host holds it by shared_ptr, and so does a running operation: a driver lives at
/// least as long as its operations. Only one operation may run at a time: a host starts the next
/// one after the idle report of the previous one.
class GPSPlugInProtocol {
public:
    using Status = std::shared_ptr<GPSOutputReceiver>;

    virtual ~GPSPlugInProtocol() = default;

    /// `className`: the driver's class, for log lines. [host thread]
    [[nodiscard]] virtual std::string className() const = 0;

    /// `gpsName`: the driver's name for the user. [host thread]
    [[nodiscard]] virtual std::string gpsName() const = 0;

    /// `gpsView`: the driver's settings, for the host to draw; null if it has none. [host thread]
    [[nodiscard]] virtual std::shared_ptr<View> gpsView() const = 0;

    /// `gpsRunPVT:withOptions:`: starts to report the live position. [host thread]
    /// @return  whether it was started
    virtual bool gpsRunPVT(const Status& status, const Dictionary& options) = 0;

    /// `gpsStopPVT`: stops reporting the live position. [host thread]
    /// @return  whether it was stopped
    virtual bool gpsStopPVT() = 0;

    /// `gpsRunAcquire:withOptions:`: starts to read from the device and returns at once; or, if the
    /// options have "sourcePath", imports that file before it returns. [host thread]
    ///
    /// @param options  "debug" (number: debug level), "sourcePath" (string), and "tracks",
    ///                 "waypoints", "routes" (booleans: false skips that kind)
    /// @return         nullopt if the operation started or the file was imported; otherwise the
    ///                 error, after `gpsStateChange:` 0 was sent
    /// @throws RangeError  an imported file has a sentence that is too short; thrown after
    ///                     `gpsStateChange:` 0 was sent
    /// @throws std::bad_alloc  there was no memory for an import; likewise
    /// @throws ...         whatever the status object threw during an import; likewise
    [[nodiscard]] virtual std::optional<Error> gpsRunAcquire(const Status& status,
                                                             const Dictionary& options) = 0;

    /// `gpsRunSend:withStatus:andOptions:`: starts to write to the device and returns at once.
    /// [host thread]
    ///
    /// @param data     "track", "waypoint" and "route": arrays of records; null sends nothing
    /// @param options  "debug", as above
    /// @return         as gpsRunAcquire()
    [[nodiscard]] virtual std::optional<Error>
    gpsRunSend(const Dictionary* data, const Status& status, const Dictionary& options) = 0;

    /// `gpsCancel`: asks a running operation to stop. A driver may ignore it. [host thread]
    virtual void gpsCancel() = 0;

    /// `gpsCapabilities`: what the driver can do, as words joined by commas: the kinds that it
    /// acquires ("tracks", "waypoints", "routes", "geocaches") and sends ("sendtrk", ...).
    /// [host thread]
    [[nodiscard]] virtual std::string gpsCapabilities() const = 0;

    /// `isReady`: whether the driver has a device. [host thread]
    [[nodiscard]] virtual bool isReady() const = 0;

    /// `refreshDeviceList`: searches for devices again. [host thread]
    /// @return  isReady() afterwards
    virtual bool refreshDeviceList() = 0;

    /// `deviceList`: one record for each device: "location", and "name" and "authorized" if known.
    /// [host thread]
    [[nodiscard]] virtual Array deviceList() const = 0;

    /// `needsUSBRefreshOnVendor:product:`: whether the host should call `refreshDeviceList` when a
    /// USB device of certain identifiers appears or disappears. [host thread]
    /// @param vendor   out: the identifiers; set only if the result is true
    /// @param product  likewise
    virtual bool needsUSBRefreshOnVendor(std::int32_t* vendor, std::int32_t* product) const = 0;

    /// `needsSerialRefresh`: likewise, when serial ports appear or disappear. [host thread]
    [[nodiscard]] virtual bool needsSerialRefresh() const = 0;

    /// `needsFileSystemRefresh`: likewise, when volumes are mounted or unmounted. [host thread]
    [[nodiscard]] virtual bool needsFileSystemRefresh() const = 0;

    /// `fileTypes`: the extensions of files that can be imported; nullopt if the driver cannot
    /// import. [host thread]
    [[nodiscard]] virtual std::optional<std::vector<std::string>> fileTypes() const = 0;
};

} // namespace gps
