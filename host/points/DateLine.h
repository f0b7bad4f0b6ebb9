// SPDX-License-Identifier: MIT
// Finds where a line crosses the 180th meridian. Writers of flat maps cut lines there. Stateless.
// [any]

#pragma once

#include <gps/GPSPoint.h>

#include <optional>

namespace host {

/// One position on the 180th meridian, written with the longitude of each side.
struct DateLineCrossing {
    gps::GPSPoint before; ///< where the part that starts at `from` ends
    gps::GPSPoint after;  ///< where the part that ends at `to` starts
};

/// The point at which the line between two points crosses the 180th meridian. A line takes the
/// shorter way around the globe, so it crosses if the longitudes differ by more than 180 degrees.
/// Latitude and altitude are interpolated; so is the time if both points have a timestamp,
/// otherwise it is 0.
/// @return  nullopt if the line does not cross
/// Precondition: both points have valid coordinates.
[[nodiscard]] std::optional<DateLineCrossing> dateLineCrossing(const gps::GPSPoint& from,
                                                               const gps::GPSPoint& to) noexcept;

} // namespace host
