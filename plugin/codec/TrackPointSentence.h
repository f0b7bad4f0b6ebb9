// SPDX-License-Identifier: MIT
// Track point sentences: one "$PMGNTRK" line <-> one gps::GPSPoint. Used by the readers and writers
// of track files and by serial sessions. Stateless. [any]

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
struct GPSPoint;
} // namespace gps

namespace magellan {

class SentenceFields;

/// The first field of a track point sentence.
inline constexpr std::string_view kTrackPointSentence = "PMGNTRK";

/// Reads one line as a track point: `interpretTrackPointSentence:into:withExtras:`.
///
/// A sentence without a date takes its day from `point`. Pass the same point for each line of a
/// file, zeroed before the first line.
///
/// @param sentence  one line as read: "$", body, "*hh", optional line end
/// @param point     in: the previous point. out: degrees (north and east positive), metres, seconds
///                  since 1970-01-01 UTC (0: no time). `reserved` is never changed
/// @param extras    out: "trackName" if the sentence has a track name, otherwise unchanged; may be
///                  null
/// @return          whether the line is a track point. If not, nothing has changed
/// @throws gps::RangeError  the body has fewer than 8 fields. Nothing has changed
/// Source: NMEA 0183 proprietary sentence form; 3.2808399 feet to a metre.
[[nodiscard]] bool interpretTrackPointSentence(std::string_view sentence, gps::GPSPoint& point,
                                               gps::Dictionary* extras);

/// The same for a sentence that was checked and split already.
/// Precondition: field 0 is kTrackPointSentence.
void readTrackPoint(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* extras);

/// Writes one point: `makeTrackPointSentenceWithPoint:andExtras:`. There is no argument for extras:
/// a written point has no name.
/// @return  the sentence with its checksum, without a line end; nullopt if a coordinate is not
///          finite or out of range
[[nodiscard]] std::optional<std::string>
makeTrackPointSentenceWithPoint(const gps::GPSPoint& point);

/// Appends that sentence to a text.
/// @return  whether there is one. If not, the text is unchanged
[[nodiscard]] bool appendTrackPointSentence(std::string& text, const gps::GPSPoint& point);

} // namespace magellan
