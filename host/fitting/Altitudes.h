// SPDX-License-Identifier: MIT
// Altitudes: elevations that no receiver has room for. A `send` treats them as unknown. Stateless.
// [any]

#pragma once

#include <gps/Value.h>

#include <cstddef>

namespace host {

/// The elevations that a receiver can store, in metres: five characters.
inline constexpr double kLowestAltitude = -9999;
inline constexpr double kHighestAltitude = 99999;

/// Makes every elevation that is not in this range a NaN, after its fraction is dropped, as the
/// receiver does. An infinite one is not in the range.
/// @param data  the records to send; changed in place
/// @return      how many there were, of waypoints and of the points of routes and tracks
[[nodiscard]] std::size_t clearImpossibleAltitudes(gps::Dictionary& data);

} // namespace host
