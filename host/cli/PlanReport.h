// SPDX-License-Identifier: MIT
// What a send would do and what it did, as lines for people. Stateless: [any] thread.

#pragma once

#include "host/fitting/NameFitting.h"

#include <gps/GPSFileDevice.h>

#include <string>
#include <vector>

namespace host {

/// A line for each file, each text that changed, and each remark of the driver.
/// @param device  the device's place; files below it are shown by their paths from there
[[nodiscard]] std::string planReport(const gps::SendPlan& plan,
                                     const std::vector<TextChange>& changes,
                                     const std::string& device);

/// How many records of each kind a data dictionary holds: "2 waypoints, 1 route, 0 tracks".
[[nodiscard]] std::string recordCounts(const gps::Dictionary& data);

} // namespace host
