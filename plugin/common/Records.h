// SPDX-License-Identifier: MIT
// Records: how waypoint records are kept by name, and the points of tracks and routes. Used by the
// readers and writers of files. Stateless. [any]

#pragma once

#include <gps/Value.h>

namespace magellan {

/// Stores a copy of a waypoint's extras, with its point under "point", under the waypoint's "name".
/// Replaces an earlier record of that name. A waypoint without a name is not stored.
void keepByName(const gps::Dictionary& extras, const gps::GPSPoint& point,
                gps::Dictionary& records);

/// The array under a record's "points"; empty if it is missing or not an array.
[[nodiscard]] const gps::Array& pointsOf(const gps::Dictionary& record);

} // namespace magellan
