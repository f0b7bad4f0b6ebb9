// SPDX-License-Identifier: MIT
// Waypoint sentences: one "$PMGNWPL" line <-> one point with its record. Used by the readers and
// writers of waypoint and route files and by serial sessions. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

class SentenceFields;

/// The first field of a waypoint sentence.
inline constexpr std::string_view kWayPointSentence = "PMGNWPL";

/// Reads one line as a waypoint: `interpretWayPointSentence:into:withExtras:`.
///
/// @param sentence  one line as read: "$", body, "*hh", optional line end
/// @param point     out: degrees (north and east positive), metres (the unit field is ignored),
///                  time 0. `reserved` is never changed
/// @param record    out: "name" and "comment" if the body has 9 fields or more, "symbol" if it has
///                  10 or more; may be null
/// @return          whether the line is a waypoint. If not, nothing has changed
/// @throws gps::RangeError  the body has fewer than 6 fields, or exactly 7 or 8 and a record is
///                          given. Nothing has changed
/// Source: NMEA 0183 proprietary sentence form.
[[nodiscard]] bool interpretWayPointSentence(std::string_view sentence, gps::GPSPoint& point,
                                             gps::Dictionary* record);

/// The same for a sentence that was checked and split already.
/// Precondition: field 0 is kWayPointSentence.
void readWayPoint(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* record);

/// Returns the name that `readWayPoint` would store, without reading the rest; nullopt if it would
/// store none.
/// @throws gps::RangeError  `readWayPoint` would throw it, given a record
[[nodiscard]] std::optional<std::string_view> wayPointName(const SentenceFields& fields);

/// Whether a sentence is as it would be written after it was read. Returns false for some rare
/// sentences that are.
/// Precondition: field 0 is kWayPointSentence.
[[nodiscard]] bool isWayPointAsWritten(const SentenceFields& fields);

/// Writes one waypoint: `makeWayPointSentenceWithPoint:andExtras:`.
/// @param record  "name" (filtered, cut to 20 characters), "comment" (filtered), "symbol"
/// @return        the sentence with its checksum, without a line end; nullopt if a coordinate is
///                not finite or out of range
[[nodiscard]] std::optional<std::string>
makeWayPointSentenceWithPoint(const gps::GPSPoint& point, const gps::Dictionary& record);

/// Writes a list: `makeWayPointSentencesFromWaypointList:`. A record without a point, or with a
/// point that cannot be written, is logged and skipped.
[[nodiscard]] std::vector<std::string>
makeWayPointSentencesFromWaypointList(const gps::Array& list);

/// Appends the sentence of one element of such a list to a text, with its line end. Always returns
/// true; it does so to match `appendGeoCacheLine`.
bool appendWayPointLine(const gps::Value& element, std::string& text);

} // namespace magellan
