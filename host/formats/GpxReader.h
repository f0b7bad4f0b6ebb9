// SPDX-License-Identifier: MIT
// GpxReader: GPX files as the data dictionary that a send hands to a driver. Stateless: [any]
// thread. Source of the form: the GPX 1.0 and 1.1 schemas, http://www.topografix.com/GPX/1/1, and
// for geocaches the cache 1.0 extension, http://www.groundspeak.com/cache/1/0.

#pragma once

#include <gps/Error.h>

#include <cstddef>
#include <optional>
#include <string>

namespace host {

inline constexpr std::size_t kLargestGpx = std::size_t{1}
                                           << 30; ///< bytes; a larger file is not read

/// Adds what a file of any maker holds, in the file's order, to the arrays under "waypoint",
/// "route" and "track"; a kind that the file lacks brings no key. Elements are known by their names
/// alone, whatever their namespace's prefix; what is unknown is passed over.
///
/// Waypoint: "name", "comment", "symbol", "point". Geocache: a waypoint with the nine texts of a
/// cache, and "Geocache" or "Geocache Found" as its symbol; dates are "DDMMYY". Route: "name",
/// "comment", "number", and waypoints under "points". Track: "name", and its segments' points, one
/// after another, as dictionaries with a "point". A name, a symbol, a route's comment or a number
/// that the file does not tell is no key. A malformed elevation or time is 0.
///
/// @return  the file cannot be read, is no GPX, is damaged or cut short, or has a point without a
/// possible place: with the
///          line where it shows. Nothing has been added then
[[nodiscard]] std::optional<gps::Error> readGpx(const std::string& path, gps::Dictionary& data);

} // namespace host
