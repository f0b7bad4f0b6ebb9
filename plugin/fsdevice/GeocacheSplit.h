// SPDX-License-Identifier: MIT
// Separates the geocaches from the waypoints that a host sends. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <optional>

namespace magellan {

/// Neither list is ever empty: it is nullopt instead.
struct SplitList {
    std::optional<gps::Array> waypoints; ///< in the list's order
    std::optional<gps::Array> geocaches; ///< in the reverse of the list's order
};

/// Whether any record of a list is a geocache.
[[nodiscard]] bool hasGeocache(const gps::Array& list);

/// `extractGeocachesFromList:toWaypoints:toGeocaches:`: splits a list of waypoint records. A
/// geocache is a record whose "symbol" begins with "Geocache".
[[nodiscard]] SplitList extractGeocachesFromList(const gps::Array& list);

} // namespace magellan
