// SPDX-License-Identifier: MIT
// Geocache sentences: one "$PMGNGEO" line <-> one point with its record.
// Stateless: any thread may call these at any time, each with a point and a record of its own.

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// Reads one line as a geocache: `interpretGeoCacheSentence:into:withExtras:`. [any]
///
/// @param sentence  one line as read: "$", body, "*hh", with or without a line end
/// @param point     out: degrees (north and east positive), metres, time 0. `reserved` is never
/// touched
/// @param record    gets the nine text fields as they stand, and "symbol": "Geocache Found" when
/// the placed date is not empty,
///                  else "Geocache" (it is the placed date that receivers fill in when the user
///                  finds a cache); may be null
/// @return          whether the line was a geocache. If not, nothing has changed
/// @throws gps::RangeError  the body has fewer than 6 fields, or fewer than 16 and a record is
/// given. Nothing has changed Source: NMEA 0183 proprietary sentence form.
[[nodiscard]] bool interpretGeoCacheSentence(std::string_view sentence, gps::GPSPoint& point,
                                             gps::Dictionary* record);

/// The name of the geocache that a line holds, without reading the rest of it. [any]
/// @return  a view into the line; none when `interpretGeoCacheSentence` would refuse the line or
/// find no name
/// @throws gps::RangeError  when that would, given a record
[[nodiscard]] std::optional<std::string_view> nameInGeoCacheSentence(std::string_view sentence);

/// Writes one geocache: `makeGeoCacheSentenceWithPoint:andExtras:`. No text is cut, the name
/// included. [any]
/// @return  the sentence with its checksum, without a line end; none when a coordinate cannot be
/// written
[[nodiscard]] std::optional<std::string>
makeGeoCacheSentenceWithPoint(const gps::GPSPoint& point, const gps::Dictionary& record);

/// Writes a list: `makeGeocacheSentencesFromGeocacheList:`. A record that cannot be written is
/// logged and left out. [any]
/// @return  none, after a log line, when any record has no point: half a list of caches is never
/// written
[[nodiscard]] std::optional<std::vector<std::string>>
makeGeocacheSentencesFromGeocacheList(const gps::Array& list);

} // namespace magellan
