// SPDX-License-Identifier: MIT
// Geocache sentences: one "$PMGNGEO" line <-> one point with its record. Used by the readers and
// writers of geocache files; serial receivers have no geocaches. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

class SentenceFields;

/// The first field of a geocache sentence.
inline constexpr std::string_view kGeoCacheSentence = "PMGNGEO";

/// Reads one line as a geocache: `interpretGeoCacheSentence:into:withExtras:`.
///
/// @param sentence  one line as read: "$", body, "*hh", optional line end
/// @param point     out: degrees (north and east positive), metres, time 0. `reserved` is never
///                  changed
/// @param record    out: the nine text fields as they are, and "symbol": "Geocache Found" if the
///                  placed date is not empty, otherwise "Geocache" (receivers fill in the placed
///                  date when the user finds a cache); may be null
/// @return          whether the line is a geocache. If not, nothing has changed
/// @throws gps::RangeError  the body has fewer than 6 fields, or fewer than 16 and a record is
///                          given. Nothing has changed
/// Source: NMEA 0183 proprietary sentence form.
[[nodiscard]] bool interpretGeoCacheSentence(std::string_view sentence, gps::GPSPoint& point,
                                             gps::Dictionary* record);

/// The same for a sentence that was checked and split already.
/// Precondition: field 0 is kGeoCacheSentence.
void readGeoCache(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* record);

/// Returns the name that `readGeoCache` would store, without reading the rest. Always has a value;
/// optional to match `wayPointName`.
/// @throws gps::RangeError  `readGeoCache` would throw it, given a record
[[nodiscard]] std::optional<std::string_view> geoCacheName(const SentenceFields& fields);

/// Whether a sentence is as it would be written after it was read. Returns false for some rare
/// sentences that are.
/// Precondition: field 0 is kGeoCacheSentence.
[[nodiscard]] bool isGeoCacheAsWritten(const SentenceFields& fields);

/// Writes one geocache: `makeGeoCacheSentenceWithPoint:andExtras:`. All nine texts are filtered;
/// none is cut, not even the name.
/// @return  the sentence with its checksum, without a line end; nullopt if a coordinate is not
///          finite or out of range
[[nodiscard]] std::optional<std::string>
makeGeoCacheSentenceWithPoint(const gps::GPSPoint& point, const gps::Dictionary& record);

/// Writes a list: `makeGeocacheSentencesFromGeocacheList:`. A record with a point that cannot be
/// written is logged and skipped.
/// @return  nullopt, after a log line, if any record has no point: an incomplete list of caches is
///          never written
[[nodiscard]] std::optional<std::vector<std::string>>
makeGeocacheSentencesFromGeocacheList(const gps::Array& list);

/// Appends the sentence of one element of such a list to a text, with its line end.
/// @return  false, after a log line, if the record has no point
[[nodiscard]] bool appendGeoCacheLine(const gps::Value& element, std::string& text);

} // namespace magellan
