// SPDX-License-Identifier: MIT
// PointNames: assigns each route point name to one position. A receiver finds the points of its
// routes by name alone, so the same name at two positions would lead a route astray. Used by
// NameFitting. One thread at a time.

#pragma once

#include "host/points/DevicePosition.h"
#include "host/points/DevicePositionSet.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace host {

class PointNames {
public:
    /// Adds a route point that the receiver holds. Several may have the same name, in different
    /// files.
    void addOnDevice(const std::string& name, const gps::GPSPoint& point);

    /// Assigns a name to a point's position, unless it belongs to another position: to one of an
    /// earlier claim, or to those that the receiver holds under the name.
    /// @return  whether the name now belongs to this position
    [[nodiscard]] bool claim(const std::string& name, const gps::GPSPoint& point);

private:
    std::unordered_map<std::string, std::optional<DevicePosition>> claimed_;
    std::unordered_map<std::string, DevicePositionSet> onDevice_;
};

} // namespace host
