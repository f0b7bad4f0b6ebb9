// SPDX-License-Identifier: MIT
// GPSDeviceSearch: what a driver examined when it searched for devices, and what it concluded, so
// that a host can explain to a user why a receiver was not found. Optional: a host asks a driver
// for it by dynamic_cast. [host thread]

#pragma once

#include <string>
#include <vector>

namespace gps {

/// One location that may or may not be a device: a volume or a port.
struct SearchedLocation {
    enum class Verdict {
        kAccepted, ///< it is in the driver's device list
        kRejected, ///< it was examined and is not a device
        kSkipped,  ///< it was not examined: locations of its type are never devices
    };

    std::string location; ///< as in a device record
    std::string sort;     ///< what it is, for the user, such as "removable volume"
    Verdict verdict = Verdict::kSkipped;
    std::string reason; ///< one sentence for the user: why it was accepted or not
    std::string advice; ///< one sentence: what the user can do; empty if nothing is wrong
};

class GPSDeviceSearch {
public:
    virtual ~GPSDeviceSearch() = default;

    /// Searches again by the same steps as `refreshDeviceList`. Neither the device list nor the
    /// selection changes. [host thread]
    /// @return  all locations, in the order in which they were examined
    [[nodiscard]] virtual std::vector<SearchedLocation> searchedLocations() const = 0;
};

} // namespace gps
