// SPDX-License-Identifier: MIT
// Tells the geocaches among the waypoints that a host sends. Stateless: [any] thread.

#pragma once

#include <gps/Value.h>

#include <optional>

namespace magellan {

/// Either list is none when it would be empty.
struct SplitList {
    std::optional<gps::Array> waypoints; ///< in the list's order
    std::optional<gps::Array> geocaches; ///< in the reverse of the list's order
};

/// `extractGeocachesFromList:toWaypoints:toGeocaches:`: a geocache is a record whose "symbol"
/// begins with "Geocache".
[[nodiscard]] SplitList extractGeocachesFromList(const gps::Array& list);

} // namespace magellan
