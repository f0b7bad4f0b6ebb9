// SPDX-License-Identifier: MIT
// Track point sentences: one "$PMGNTRK" line <-> one gps::GPSPoint.
// Stateless: any thread may call these at any time, each with a point and extras of its own.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
struct GPSPoint;
} // namespace gps

namespace magellan {

/// Reads one line as a track point: `interpretTrackPointSentence:into:withExtras:`. [any]
///
/// A line without a date takes its day from the point handed in: a reader hands in the same point
/// from line to line, zeroed before a file's first line.
///
/// @param sentence  one line as read: "$", body, "*hh", with or without a line end
/// @param point     in: the previous point. out: degrees (north and east positive), metres, seconds
/// since
///                  1970-01-01 UTC (0: no time). `reserved` is never touched
/// @param extras    gets "trackName" if the line names a track, else keeps what it holds; may be
/// null
/// @return          whether the line was a track point. If not, nothing has changed
/// @throws gps::RangeError  the body has fewer than 8 fields. Nothing has changed
/// Source: NMEA 0183 proprietary sentence form; feet by the factor 3.2808399.
[[nodiscard]] bool interpretTrackPointSentence(std::string_view sentence, gps::GPSPoint& point,
                                               gps::Dictionary* extras);

/// Writes one point: `makeTrackPointSentenceWithPoint:andExtras:`. A point carries no name, so
/// there are no extras to give. [any]
/// @return  the sentence with its checksum, without a line end; none when a coordinate cannot be
/// written
[[nodiscard]] std::optional<std::string>
makeTrackPointSentenceWithPoint(const gps::GPSPoint& point);

} // namespace magellan
