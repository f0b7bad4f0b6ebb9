// SPDX-License-Identifier: MIT
// Explanation: what the drivers made of each place where a device might be, for a user whose
// receiver is not found. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace host {

/// For a terminal: a paragraph a driver, the devices first, then what was looked at, then what was
/// not.
[[nodiscard]] std::string explanationOf(const PlugInBundle& plugIn);

/// For scripts: a driver's places in the order of looking; null where it does not tell.
[[nodiscard]] nlohmann::ordered_json searchedLocationsJson(const gps::GPSPlugInProtocol& driver);

} // namespace host
