// SPDX-License-Identifier: MIT
// GPSDeviceDescription: which receiver a device is, as far as the receiver itself says so.
// Optional: a host asks a driver for it by dynamic_cast. [host thread]

#pragma once

#include <optional>
#include <string>

namespace gps {

/// What a receiver says about itself, for the user. What it does not say is nullopt.
struct DeviceDescription {
    std::optional<std::string> model;
    std::optional<std::string> firmware; ///< its version
};

class GPSDeviceDescription {
public:
    virtual ~GPSDeviceDescription() = default;

    /// Describes a device of the driver's list. May read the device's files, but opens no port: of
    /// a receiver on a port it returns what the last session there has learnt. [host thread]
    /// @param location  as in the device's record
    [[nodiscard]] virtual DeviceDescription
    deviceDescription(const std::string& location) const = 0;
};

} // namespace gps
