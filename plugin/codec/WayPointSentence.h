// SPDX-License-Identifier: MIT
// Waypoint sentences: one "$PMGNWPL" line <-> one point with its record.
// Stateless: any thread may call these at any time, each with a point and a record of its own.

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// Reads one line as a waypoint: `interpretWayPointSentence:into:withExtras:`. [any]
///
/// @param sentence  one line as read: "$", body, "*hh", with or without a line end
/// @param point     out: degrees (north and east positive), metres (whatever the unit field says),
/// time 0. `reserved` is never
///                  touched
/// @param record    gets "name" and "comment" (not at all from a body of 6 fields), and "symbol"
/// from 10 fields on; may be null
/// @return          whether the line was a waypoint. If not, nothing has changed
/// @throws gps::RangeError  the body has fewer than 6 fields, or 7 or 8 and a record is given.
/// Nothing has changed Source: NMEA 0183 proprietary sentence form.
[[nodiscard]] bool interpretWayPointSentence(std::string_view sentence, gps::GPSPoint& point,
                                             gps::Dictionary* record);

/// The name of the waypoint that a line holds, without reading the rest of it. [any]
/// @return  a view into the line; none when `interpretWayPointSentence` would refuse the line or
/// find no name
/// @throws gps::RangeError  when that would, given a record
[[nodiscard]] std::optional<std::string_view> nameInWayPointSentence(std::string_view sentence);

/// Writes one waypoint: `makeWayPointSentenceWithPoint:andExtras:`. [any]
/// @param record  "name" (filtered, cut to 20 characters), "comment" (filtered), "symbol"
/// @return        the sentence with its checksum, without a line end; none when a coordinate cannot
/// be written
[[nodiscard]] std::optional<std::string>
makeWayPointSentenceWithPoint(const gps::GPSPoint& point, const gps::Dictionary& record);

/// Writes a list: `makeWayPointSentencesFromWaypointList:`. A record without a point, or that
/// cannot be written, is logged and left out. [any]
[[nodiscard]] std::vector<std::string>
makeWayPointSentencesFromWaypointList(const gps::Array& list);

} // namespace magellan
