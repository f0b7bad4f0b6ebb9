// SPDX-License-Identifier: MIT
// Field text: how a record's texts become sentence fields and back. Shared by all sentence kinds.
// Stateless: [any] thread.

#pragma once

#include <platform/GPSUtilities/CharacterFilter.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
struct GPSPoint;
} // namespace gps

namespace magellan {

class SentenceFields;

/// The 81 characters that receivers can show and store, and how many of them a name keeps.
inline constexpr char kDeviceCharacters[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz .0123456789-/'!@#<%^&>()+=:\\";
inline constexpr std::size_t kLongestName = 20;

/// kDeviceCharacters as a set.
[[nodiscard]] const gps::CharacterSet& deviceCharacterSet();

/// `magellanStringFromDictionary:withKey:andLength:`: the text under a key, filtered to the
/// device's characters, then cut to its first 20. The length is not consulted: receivers have one
/// length of name, and every caller passes 20.
[[nodiscard]] std::string magellanStringFromDictionary(const gps::Dictionary& record,
                                                       std::string_view key, int length);

/// `magellanStringFromDictionary:withKey:`: the same, not cut. A missing key, or one whose value is
/// no text, gives "".
[[nodiscard]] std::string magellanStringFromDictionary(const gps::Dictionary& record,
                                                       std::string_view key);

/// `setInDictionary:forKey:fromIndex:ofArray:`: copies a field into a record when the field count
/// is at least `index`.
/// @throws gps::RangeError  the count is exactly `index`: receivers write the fields up to a kind's
/// last or none of them, so a
///                          sentence that stops here is damaged
void setInDictionary(gps::Dictionary& record, std::string_view key, std::size_t index,
                     const SentenceFields& fields);

/// Reads a point's place, as all kinds but routes begin: fields 1 to 5, latitude and its letter,
/// longitude and its letter, altitude. The altitude is taken as it stands, whatever its unit.
/// @throws gps::RangeError  there are fewer than 6 fields. Nothing has changed
void readPlace(const SentenceFields& fields, gps::GPSPoint& point);

/// Appends "NAME,latitude,letter,longitude,letter,altitude,M," to a body: the altitude truncated
/// toward zero, saturated at 32 bits, in at least `altitudeDigits` characters.
/// @return  false, with the body unchanged, when a coordinate has no text
[[nodiscard]] bool appendPlace(std::string& body, std::string_view name, const gps::GPSPoint& point,
                               int altitudeDigits);

} // namespace magellan
