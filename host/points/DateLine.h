// SPDX-License-Identifier: MIT
// Where lines cross the date line: on a flat map they are cut there. Stateless: [any] thread.

#pragma once

#include <gps/GPSPoint.h>

#include <optional>

namespace host {

/// One place on the meridian of 180 degrees, as both sides of it write it.
struct DateLineCrossing {
    gps::GPSPoint before; ///< the end of the part that comes from `from`
    gps::GPSPoint after;  ///< the start of the part that goes to `to`
};

/// Where a line crosses the meridian of 180 degrees. Of the two ways around the globe it takes the
/// shorter one, so it crosses when the longitudes lie more than 180 degrees apart. Latitude and
/// altitude at the crossing are interpolated, and the time where both points have a moment; else
/// the crossing has none. Precondition: both points lie on the globe.
[[nodiscard]] std::optional<DateLineCrossing> dateLineCrossing(const gps::GPSPoint& from,
                                                               const gps::GPSPoint& to) noexcept;

} // namespace host
