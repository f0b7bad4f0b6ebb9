// SPDX-License-Identifier: MIT
// KindsText: the kinds of records that a driver transfers, in words. Stateless. [any]

#pragma once

#include <gps/GPSOutputReceiver.h>

#include <string>
#include <vector>

namespace host {

/// "waypoints, tracks"
[[nodiscard]] std::string kindsText(const std::vector<gps::TransferKind>& kinds);

} // namespace host
