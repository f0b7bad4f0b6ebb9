// SPDX-License-Identifier: MIT
// GpxReader: reads GPX files into the data dictionary that a send hands to a driver. Stateless.
// [any] Source of the format: the GPX 1.0 and 1.1 schemas, http://www.topografix.com/GPX/1/1, and
// for geocaches the cache 1.0 extension, http://www.groundspeak.com/cache/1/0.

#pragma once

#include "host/formats/UnreadParts.h"

#include <gps/Error.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace host {

/// Gets how many bytes of a file have been read, and how many there are. Called now and then.
using ReadProgress = std::function<void(std::size_t done, std::size_t total)>;

/// Adds the file's records, in its order, to the arrays under "waypoint", "route" and "track" of
/// `data`. Adds no key for a kind that the file lacks. Ignores unknown elements and those that
/// other makers' namespaces bring.
///
/// - Waypoint: "name", "comment", "symbol", "point".
/// - Geocache: a waypoint with the nine fields of a cache and the symbol "Geocache" or "Geocache
///   Found". Dates are "DDMMYY".
/// - Route: "name", "comment", "number", "source", and its waypoints under "points".
/// - Track: "name", "comment", "source", and under "points" its points as dictionaries with a
///   "point". A track of several segments with points gives a record for each, with its number
///   under "segment".
///
/// A missing name, symbol, comment of a route or track, number or source adds no key. A missing or
/// malformed elevation is a NaN, and such a time is 0.
///
/// @param unread  gets what was left out, such as the waypoints without valid coordinates; null: a
///                file with one of those is rejected, as it always is for a point of a route or
///                track
/// @return        an error with the line number if the file cannot be read, is not GPX, is damaged
///                or cut short, or has a point without valid coordinates. `data` is then unchanged
[[nodiscard]] std::optional<gps::Error> readGpx(const std::string& path, gps::Dictionary& data,
                                                UnreadParts* unread = nullptr,
                                                const ReadProgress& progress = {});

} // namespace host
