// SPDX-License-Identifier: MIT
// Route sentences: a run of "$PMGNRTE" lines <-> one route. The lines name their waypoints, which
// travel as sentences of their own. Stateless: any thread may call these at any time, each with
// arguments of its own.

#pragma once

#include <gps/Value.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// The bytes that the records of a file's, or a session's, route points may take. Each mention of a
/// waypoint copies its record, so that a few megabytes of mentions could ask for more memory than
/// there is.
constexpr std::size_t kRoutePointRoom = std::size_t{1} << 30;

/// Reads one line of a route: `interpretRouteSentence:into:fromWaypoints:withInfo:`. [any]
///
/// @param sentence   one line as read: "$", body, "*hh", with or without a line end
/// @param points     gets the records of the waypoints that the line names, in order; a name that
/// is not there is logged
/// @param waypoints  name to waypoint record
/// @param info       in and out, from line to line of one route: "lastIndex", "name", "comment". A
/// gap in the numbers is logged
/// @param room       in and out: the bytes that records may still take, kRoutePointRoom at first
/// @return           whether the line was the route's last one
/// @throws gps::RangeError  the body has fewer than 6 fields, an empty kind, or a message without
/// its text. Nothing has changed
/// @throws std::length_error  there is no more room. The points so far stand
/// Source: NMEA 0183 proprietary sentence form.
[[nodiscard]] bool interpretRouteSentence(std::string_view sentence, gps::Array& points,
                                          const gps::Dictionary& waypoints, gps::Dictionary& info,
                                          std::size_t& room);

/// Writes a route: `makeRouteSentencesFromWaypointList:andInfo:`: lists of two waypoints each, then
/// the comment as a message. [any]
/// @param list  waypoint records in route order: "name" (filtered, cut to 20 characters), "symbol"
/// @param info  "name" (likewise), "comment" (filtered), "number" (1 when missing)
/// @return      sentences with their checksums, without line ends
[[nodiscard]] std::vector<std::string>
makeRouteSentencesFromWaypointList(const gps::Array& list, const gps::Dictionary& info);

} // namespace magellan
