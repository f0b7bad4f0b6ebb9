// SPDX-License-Identifier: MIT
// KindText: the kinds of records that a driver transfers, in words. Stateless. [any]

#pragma once

#include <gps/GPSOutputReceiver.h>

#include <string>
#include <vector>

namespace host {

/// @param name  of a kind in accounts: "tracks", "routes", "waypoints" or "geocaches"
/// @return      any other name as it is
[[nodiscard]] std::string kindText(const std::string& name);

/// "waypoints, tracks"
[[nodiscard]] std::string kindsText(const std::vector<gps::TransferKind>& kinds);

} // namespace host
