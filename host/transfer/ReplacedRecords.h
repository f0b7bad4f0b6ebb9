// SPDX-License-Identifier: MIT
// ReplacedRecords: finds what a send replaces on the device, so that the user learns of it before.
// Stateless. [any]

#pragma once

#include <gps/GPSFileDevice.h>

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A record of the device in whose place a sent one with the same name would be.
struct ReplacedRecord {
    std::string_view kind; ///< "waypoint", "geocache" or "route"
    std::string name;
};

/// The records of the device that would no longer be on it as they are. One for which the device
/// stores the same as for the sent record does not change.
/// @param data  what is sent, with names and texts as the device stores them
/// @return      in the order of the data
[[nodiscard]] std::vector<ReplacedRecord> replacedRecords(const gps::Dictionary& data,
                                                          const gps::SendPlan& plan,
                                                          const gps::DeviceSnapshot& snapshot,
                                                          const gps::GPSFileDevice& device);

} // namespace host
