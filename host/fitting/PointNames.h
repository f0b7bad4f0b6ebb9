// SPDX-License-Identifier: MIT
// PointNames: which place each name of a route's point stands for. A device finds the points of its
// routes by their names alone, so that one name at two places leads a route astray. One thread at a
// time.

#pragma once

#include <gps/GPSPoint.h>

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace host {

class PointNames {
public:
    /// Several points of the device may have one name, in different files.
    void addOnDevice(const std::string& name, const gps::GPSPoint& place);

    /// Makes a name stand for a place, unless it stands for another one already: here, or on the
    /// device.
    /// @return  whether it stands for this place now
    [[nodiscard]] bool claim(const std::string& name, const gps::GPSPoint& place);

private:
    [[nodiscard]] bool isHeldElsewhere(const std::string& name, const gps::GPSPoint& place) const;

    std::unordered_map<std::string, gps::GPSPoint> claimed_;
    std::unordered_set<std::string> onDevice_; // names
    std::unordered_set<std::string> places_;   // the device's, each with its name
};

} // namespace host
