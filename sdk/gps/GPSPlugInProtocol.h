// SPDX-License-Identifier: MIT
// The driver interface: what a host asks of each driver that a plug-in offers. All of it [host
// thread].

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

/// A driver. A host holds it by shared_ptr; a running operation holds one more, so a driver
/// outlives its operations. One operation at a time: a host starts the next after the idle report
/// of the one before.
class GPSPlugInProtocol {
public:
    using Status = std::shared_ptr<GPSOutputReceiver>;

    virtual ~GPSPlugInProtocol() = default;

    /// `className`: for log lines and for people who look at a host's insides.
    [[nodiscard]] virtual std::string className() const = 0;

    [[nodiscard]] virtual std::string gpsName() const = 0;
    [[nodiscard]] virtual std::shared_ptr<View> gpsView() const = 0;

    /// `gpsRunPVT:withOptions:`, `gpsStopPVT`: live position. @return  whether it runs; whether it
    /// was stopped
    virtual bool gpsRunPVT(const Status& status, const Dictionary& options) = 0;
    virtual bool gpsStopPVT() = 0;

    /// `gpsRunAcquire:withOptions:`: reads from the device and returns at once; or imports the file
    /// under "sourcePath" before it returns.
    /// @return  why it could not start, or the import's error, after `gpsStateChange:` 0 was sent;
    /// none: it started, or was imported
    /// @throws RangeError  an imported file holds a sentence that is too short; after
    /// `gpsStateChange:` 0 was sent
    [[nodiscard]] virtual std::optional<Error> gpsRunAcquire(const Status& status,
                                                             const Dictionary& options) = 0;

    /// `gpsRunSend:withStatus:andOptions:`: writes to the device and returns at once.
    /// @param data  "track", "waypoint", "route": arrays of records; null sends nothing
    [[nodiscard]] virtual std::optional<Error>
    gpsRunSend(const Dictionary* data, const Status& status, const Dictionary& options) = 0;

    virtual void gpsCancel() = 0;

    /// Words joined by commas: what can be acquired (tracks, waypoints, routes, geocaches) and sent
    /// (sendtrk, ...).
    [[nodiscard]] virtual std::string gpsCapabilities() const = 0;

    [[nodiscard]] virtual bool isReady() const = 0;
    virtual bool refreshDeviceList() = 0; ///< looks again; answers `isReady`

    /// The devices as records: "location", and where known "name" and "authorized".
    [[nodiscard]] virtual Array deviceList() const = 0;

    /// Which events of the system should make the host call `refreshDeviceList`.
    /// `needsUSBRefreshOnVendor:product:`: the pointers get the ids to look for, where the answer
    /// is true.
    virtual bool needsUSBRefreshOnVendor(std::int32_t* vendor, std::int32_t* product) const = 0;
    [[nodiscard]] virtual bool needsSerialRefresh() const = 0;
    [[nodiscard]] virtual bool needsFileSystemRefresh() const = 0;

    /// The extensions that can be imported; none: no import.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> fileTypes() const = 0;
};

} // namespace gps
