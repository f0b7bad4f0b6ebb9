// SPDX-License-Identifier: MIT
// Records: handling of waypoint and route records that file readers and serial sessions share.
// Stateless. [any]

#pragma once

#include <gps/Value.h>

namespace gps {
class GPSOutputReceiver;
} // namespace gps

namespace magellan {

/// Stores a copy of a waypoint's extras, with its point under "point", under the waypoint's "name".
/// Replaces an earlier record of that name. A waypoint without a name is not stored.
void keepByName(const gps::Dictionary& extras, const gps::GPSPoint& point,
                gps::Dictionary& records);

/// Reports `newRoute:` and then `wayPoint:extra:` for each of the route's points.
/// Precondition: each of `points` is a record with its "point".
void reportRoute(const gps::Dictionary& info, const gps::Array& points,
                 gps::GPSOutputReceiver& status);

} // namespace magellan
