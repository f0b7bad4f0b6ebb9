// SPDX-License-Identifier: MIT
// Records: what is done alike with the records of a file and of a serial session. Stateless: [any]
// thread.

#pragma once

#include <gps/Value.h>

namespace gps {
class GPSOutputReceiver;
} // namespace gps

namespace magellan {

/// Keeps a copy of a waypoint's extras, with its point boxed under "point", under its "name", in
/// place of an earlier one of that name. Without a name there is no key to keep it under.
void keepByName(const gps::Dictionary& extras, const gps::GPSPoint& point,
                gps::Dictionary& records);

/// `newRoute:` and then `wayPoint:extra:` for each of its points.
/// @param points  records, each with its point
void reportRoute(const gps::Dictionary& info, const gps::Array& points,
                 gps::GPSOutputReceiver& status);

} // namespace magellan
