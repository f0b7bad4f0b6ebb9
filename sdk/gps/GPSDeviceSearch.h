// SPDX-License-Identifier: MIT
// GPSDeviceSearch: what a driver looked at when it searched for its devices, and what it made of
// each place, so that a host can tell a user whose receiver is not found why. Optional: a host asks
// a driver for it by dynamic_cast. [host thread]

#pragma once

#include <string>
#include <vector>

namespace gps {

/// One place that may or may not be a device.
struct SearchedPlace {
    enum class Verdict {
        kTaken,      ///< it is in the driver's device list
        kRefused,    ///< it was looked at, and is no device
        kPassedOver, ///< places of its sort are never devices: it was not looked at
    };

    std::string location; ///< as a device record has it
    std::string sort;     ///< what it is, for the user: "removable volume"
    Verdict verdict = Verdict::kPassedOver;
    std::string
        reason; ///< one sentence for the user: what it was taken for, or why it was not taken
    std::string advice; ///< one sentence: what the user can do; empty where nothing is wrong
};

class GPSDeviceSearch {
public:
    virtual ~GPSDeviceSearch();

    /// Searches again, by the same steps as `refreshDeviceList`, and tells of each place in the
    /// order of looking. Neither the device list nor the selection changes.
    [[nodiscard]] virtual std::vector<SearchedPlace> searchedPlaces() const = 0;
};

} // namespace gps
